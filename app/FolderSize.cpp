#include "app/FolderSize.h"

#include <algorithm>
#include <cstdlib>

#include "process/RunTool.h"

namespace corvane {

std::optional<float> folderSizeFrom(const std::string& output) {
  const auto tab = output.find('\t');
  if (tab == std::string::npos) return std::nullopt;
  // Decimal only: the standard library would read "0x1F", and the first letters of "information", too.
  const auto end = std::min(tab, output.find_first_not_of(" \n\r+-.0123456789eE"));
  return std::strtof(output.substr(0, end).c_str(), nullptr);
}

double percentageOf(float size, float whole) { return static_cast<double>(size / whole * 100.0F); }

std::optional<float> measureFolder(const std::string& path) {
  return folderSizeFrom(runTool({"/usr/bin/du", "-s", path}).output);
}

}  // namespace corvane
