// Where an archive's entries go: one folder after the other is opened below a root, and nothing outside it
// can be reached. Thread: one at a time.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/ditto/FolderStack.h"

namespace corvane::ditto {

/// The names between the slashes of `path`, without "." and empty ones. False when the path begins at the
/// root of the file system or has a "..": it may lead outside.
[[nodiscard]] bool splitInside(std::string_view path, std::vector<std::string>& names);

class FolderPath {
 public:
  explicit FolderPath(Descriptor root) : stack_(std::move(root)) {}

  /// Goes to the folder that the first `count` of `names` name, seen from the root; makes what is missing and
  /// follows no link. Answers the open folder, which stays so until the next call; -1, and errno, on failure.
  [[nodiscard]] int goTo(const std::vector<std::string>& names, std::size_t count);

 private:
  FolderStack stack_;
  std::vector<std::string> names_;  // of the folders that the stack holds
  bool lost_ = false;
};

}  // namespace corvane::ditto
