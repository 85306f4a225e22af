// The engine's log: one time-stamped line per step on standard error.
// Thread: any; a line is written in one piece.
#pragma once

#include <string>
#include <string_view>

namespace corvane {

/// Writes "DATE TIME NAME[PID:TID] text" to standard error, as valid UTF-8 without control characters but
/// line breaks and tabs. A line break at the end of `text` is not doubled. Never fails: a log that cannot be
/// written must not stop a backup.
void log(std::string_view text);

/// Appends standard error to the file at `path` from now on, making its folder and itself when missing;
/// the file is for its owner only. Returns false, and leaves standard error as it was, when the file cannot
/// be opened.
bool reopenStandardError(const std::string& path);

}  // namespace corvane
