// What a run that was killed left behind where this one is going to work.
// Pure but for the file system and the log; thread: main.
#pragma once

#include <string>
#include <vector>

#include "process/Files.h"
#include "script/RunRecord.h"

namespace corvane {

/// What stands between the fixed beginning and end of a name.
enum class Between {
  nothing,
  date,           ///< what `date` may write in some language; removed only if that is likely
  dateAlone,      ///< what `date` is likely to have written; without a name of ours beside it, never removed
  sixCharacters,  ///< letters and digits that make a half-written file's name unique
  sixteenDigits,  ///< of hexadecimal numbers, for our `ditto`
};

/// Entries of `folder` that only runs make, and take away again.
struct WorkName {
  std::string folder;
  std::string prefix;
  std::string suffix;
  Between between = Between::nothing;
  EntryKind kind = EntryKind::file;
  bool isUsed = true;  ///< this run will use the name, so that it must be free
};

/// The names at which the assembled script of `record` builds its archives, in the folder of `destination` or
/// in /tmp, and those of half-written files of ours there and beside the script at `scriptPath`.
[[nodiscard]] std::vector<WorkName> workNames(const RunRecord& record, const std::string& destination,
                                              const std::string& scriptPath);

/// Removes, and logs, what stands at these names, is of their kind, and belongs to this user; nothing unless
/// `isAlone`, since it may then be the work of a run that is going on. True when all names that are used are
/// free afterwards; else false, and a log line says what is in the way, or that it cannot be seen: a link or
/// something of another user's could lead the user's mail astray.
[[nodiscard]] bool clearLeftovers(const std::vector<WorkName>& names, bool isAlone);

/// Logs what came to stand at names that are used since they were free, and is no work of this user's.
void logIntruders(const std::vector<WorkName>& names);

}  // namespace corvane
