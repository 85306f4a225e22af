// Pruning of old archives at the destination.
// Pure functions of their arguments; any thread; neither fails.
#pragma once

#include <string>
#include <string_view>

#include "script/RunRecord.h"

namespace corvane {

/// What the names of a client's archives have in common: the part of `filename` before its `date` command, or
/// what follows the command and one separator when the name starts with it; the whole name when it has none.
[[nodiscard]] std::string rotationPattern(std::string_view filename);

/// `script` with a loop appended that removes the oldest archives of the record's current file name at
/// `destination` until `limit` are left. `limit` must be positive; `client` is the tag of the client's row
/// and does not narrow what is removed. The loop counts with `let`: a shell without it must never be given
/// this script, because the loop would not end before the last archive is gone.
[[nodiscard]] std::string addLimitedBackups(int limit, std::string_view client, std::string script,
                                            std::string_view destination, const RunRecord& record);

}  // namespace corvane
