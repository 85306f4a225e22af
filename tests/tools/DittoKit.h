// What the tests of the command share: running it as a child, and looking at folders.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "process/RunTool.h"
#include "tests/support/ScratchFolder.h"

namespace corvane {

class DittoKit {
 public:
  [[nodiscard]] std::string path(const std::string& name) const { return scratch_.path() + '/' + name; }

  /// Runs the command; its status and what it wrote. `before`: a program, by its path, that starts it.
  [[nodiscard]] static ToolResult ditto(std::vector<std::string> arguments,
                                        std::vector<std::string> before = {});

  /// Runs a script of the shell, with the command's path in $DITTO and the scratch folder as the current one.
  [[nodiscard]] ToolResult shell(const std::string& script) const;

  void makeFolder(const std::string& name, mode_t mode = 0755) const;
  void write(const std::string& name, const std::string& bytes, mode_t mode = 0644) const;
  void makeLink(const std::string& name, const std::string& target) const;
  [[nodiscard]] std::string read(const std::string& name) const;

 private:
  ScratchFolder scratch_;
};

enum class Times { none, seconds, nanoseconds };

/// Everything below a folder: for each path its kind, mode, time (not of links) and bytes or target.
[[nodiscard]] std::map<std::string, std::string> contents(const std::string& folder, Times times);

/// The names in a folder, sorted; those of hidden files too.
[[nodiscard]] std::vector<std::string> namesIn(const std::string& folder);

/// The names in an archive, as they are stored, in their order.
[[nodiscard]] std::vector<std::string> namesInArchive(const std::string& path);

}  // namespace corvane
