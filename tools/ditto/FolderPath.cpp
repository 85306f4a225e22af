#include "tools/ditto/FolderPath.h"

#include <algorithm>
#include <cerrno>

namespace corvane::ditto {

bool splitInside(std::string_view path, std::vector<std::string>& names) {
  names.clear();
  if (path.starts_with('/')) return false;
  while (!path.empty()) {
    const auto end = std::min(path.find('/'), path.size());
    const std::string_view name = path.substr(0, end);
    if (name == "..") return false;
    if (!name.empty() && name != ".") names.emplace_back(name);
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return true;
}

int FolderPath::goTo(const std::vector<std::string>& names, std::size_t count) {
  std::size_t common = 0;
  while (common < std::min(count, names_.size()) && names[common] == names_[common]) ++common;
  while (names_.size() > common && !lost_) {
    lost_ = !stack_.pop();
    names_.pop_back();
  }
  if (lost_) {
    errno = ESTALE;
    return -1;
  }
  for (; common < count; ++common) {
    const mode_t mode = common + 1 == names.size() ? S_IRWXU : ACCESSPERMS;
    Descriptor folder = makeFolder(stack_.top(), names[common].c_str(), mode);
    if (!folder.isOpen()) return -1;
    stack_.push(std::move(folder));
    names_.push_back(names[common]);
  }
  return stack_.top();
}

}  // namespace corvane::ditto
