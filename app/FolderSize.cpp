#include "app/FolderSize.h"

#include <cstdlib>

#include "process/RunTool.h"

namespace corvane {

std::optional<float> measureFolder(const std::string& path) {
  const std::string output = runTool({"/usr/bin/du", "-s", path}).output;
  const auto tab = output.find('\t');
  if (tab == std::string::npos) return std::nullopt;
  return std::strtof(output.substr(0, tab).c_str(), nullptr);
}

}  // namespace corvane
