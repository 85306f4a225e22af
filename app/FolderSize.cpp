#include "app/FolderSize.h"

#include <algorithm>
#include <cstdlib>

#include "process/RunTool.h"

namespace corvane {

std::optional<float> folderSizeFrom(const std::string& output) {
  const auto tab = output.find('\t');
  if (tab == std::string::npos) return std::nullopt;
  // Words such as "information" begin like a number to the standard library.
  const std::string text = output.substr(0, tab);
  const auto digit = std::min(text.find_first_not_of(" \n\r+-."), text.size());
  return text[digit] >= '0' && text[digit] <= '9' ? std::strtof(text.c_str(), nullptr) : 0.0F;
}

double percentageOf(float size, float whole) { return static_cast<double>(size / whole * 100.0F); }

std::optional<float> measureFolder(const std::string& path) {
  return folderSizeFrom(runTool({"/usr/bin/du", "-s", path}).output);
}

}  // namespace corvane
