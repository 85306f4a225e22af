#include "process/ProgramPath.h"

#include <sys/stat.h>
#include <unistd.h>
#include <algorithm>

namespace corvane {

std::vector<std::string> splitSearchPath(std::string_view list) {
  std::vector<std::string> folders;
  for (std::size_t begin = 0; begin <= list.size();) {
    const auto end = std::min(list.find(':', begin), list.size());
    folders.emplace_back(list.substr(begin, end - begin));
    begin = end + 1;
  }
  return folders;
}

std::string findProgram(std::string_view name, const std::vector<std::string>& folders) {
  if (name.empty() || name.find('/') != std::string_view::npos) return {};
  for (const auto& folder : folders) {
    if (!folder.starts_with('/')) continue;
    std::string path = folder + (folder.ends_with('/') ? "" : "/") + std::string(name);
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && ::access(path.c_str(), X_OK) == 0) {
      return path;
    }
  }
  return {};
}

}  // namespace corvane
