// Writes a shell script to disk. Thread: any; waits for the tool that makes the file executable.
#pragma once

#include <string>
#include <string_view>

namespace corvane {

class QSShellScriptGenerator {
 public:
  /// Writes `script` (UTF-8) as `folder` + `fileName`, where `folder` ends with a slash, and makes the file
  /// executable. False, and a log line with the cause, when it could not be written; a file that could not be
  /// made executable is logged and stays.
  [[nodiscard]] static bool generateShellScriptFromCommand(std::string_view script,
                                                           const std::string& fileName,
                                                           const std::string& folder);
};

}  // namespace corvane
