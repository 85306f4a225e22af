#include "app/FolderSize.h"

#include <algorithm>
#include <cstdlib>

#include "process/Log.h"
#include "process/RunTool.h"

namespace corvane {
namespace {

constexpr std::chrono::seconds kPatience{60};

}  // namespace

std::optional<float> folderSizeFrom(const std::string& output) {
  const auto tab = output.find('\t');
  if (tab == std::string::npos) return std::nullopt;
  // Decimal only: the standard library would read "0x1F", and the first letters of "information", too.
  const auto end = std::min(tab, output.find_first_not_of(" \n\r+-.0123456789eE"));
  return std::strtof(output.substr(0, end).c_str(), nullptr);
}

double percentageOf(float size, float whole) { return static_cast<double>(size / whole * 100.0F); }

std::optional<float> measureFolder(const std::string& path) {
  const ToolResult result =
      runTool({"/usr/bin/du", "-s", path}, Capture::outputAndErrors, {.limit = kPatience});
  if (!result.problem.empty()) log(result.problem);
  return result.problem.empty() ? folderSizeFrom(result.output) : std::nullopt;
}

}  // namespace corvane
