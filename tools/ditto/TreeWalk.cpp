#include "tools/ditto/TreeWalk.h"

#include <dirent.h>
#include <fcntl.h>
#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>

namespace corvane::ditto {
namespace {

bool readNames(int folder, std::vector<std::string>& names) {
  const int again = ::fcntl(folder, F_DUPFD_CLOEXEC, 0);
  DIR* listing = again < 0 ? nullptr : ::fdopendir(again);
  if (!listing) {
    Descriptor(again).close();
    return false;
  }
  errno = 0;
  while (const dirent* entry = ::readdir(listing)) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") names.push_back(name);
  }
  const int problem = errno;
  ::closedir(listing);
  std::sort(names.begin(), names.end());
  errno = problem;
  return problem == 0;
}

const char* kindThatHoldsNoData(mode_t mode) {
  if (S_ISFIFO(mode)) return "cannot be saved: it is a named pipe";
  if (S_ISSOCK(mode)) return "cannot be saved: it is a socket";
  return "cannot be saved: it is a device";
}

}  // namespace

TreeWalk::TreeWalk(Descriptor root, std::string rootPath, TreeVisitor& visitor, Report& report)
    : folders_(std::move(root)), rootPath_(std::move(rootPath)), visitor_(visitor), report_(report) {}

std::string TreeWalk::shownPath() const { return path_.empty() ? rootPath_ : below(rootPath_, path_); }

void TreeWalk::run(bool oneFileSystem) {
  oneFileSystem_ = oneFileSystem;
  Level& root = levels_.emplace_back();
  if (::fstat(folders_.top(), &root.status) != 0 || !readNames(folders_.top(), root.names)) {
    report_.failErrno(rootPath_);
  }
  while (!levels_.empty() && !lost_ && !visitor_.mustStop()) {
    Level& level = levels_.back();
    if (level.next < level.names.size()) {
      const std::string name = std::move(level.names[level.next++]);
      visit(name);
    } else {
      leave();
    }
  }
}

void TreeWalk::visit(const std::string& name) {
  if (visitor_.leavesOut(folders_.identity(), name)) return;
  path_.resize(levels_.back().pathLength);
  if (!path_.empty()) path_ += '/';
  path_ += name;
  struct stat status {};
  if (::fstatat(folders_.top(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
    report_.failErrno(shownPath());
  } else if (S_ISDIR(status.st_mode)) {
    visitFolder(name);
  } else if (S_ISREG(status.st_mode)) {
    visitFile(name);
  } else if (S_ISLNK(status.st_mode)) {
    visitLink(name, status);
  } else {
    report_.fail(shownPath(), kindThatHoldsNoData(status.st_mode));
  }
}

Descriptor TreeWalk::open(const std::string& name, int flags, struct stat& status) {
  // Should a pipe or a device have taken the place of what was listed, opening must neither wait nor act.
  constexpr int kWithoutEffect = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  Descriptor opened(::openat(folders_.top(), name.c_str(), flags | kWithoutEffect));
  if (opened.isOpen() && ::fstat(opened.get(), &status) == 0) return opened;
  report_.failErrno(shownPath());
  return Descriptor();
}

void TreeWalk::visitFolder(const std::string& name) {
  struct stat status {};
  Descriptor folder = open(name, O_DIRECTORY, status);
  if (!folder.isOpen() || !visitor_.enterFolder({path_, name.c_str(), status})) return;
  descend(std::move(folder), status);
}

void TreeWalk::descend(Descriptor folder, const struct stat& status) {
  Level level;
  level.pathLength = path_.size();
  level.status = status;
  const bool isElsewhere = oneFileSystem_ && status.st_dev != levels_.front().status.st_dev;
  if (!isElsewhere && !readNames(folder.get(), level.names)) report_.failErrno(shownPath());
  folders_.push(std::move(folder));
  levels_.push_back(std::move(level));
}

void TreeWalk::visitFile(const std::string& name) {
  struct stat status {};
  const Descriptor file = open(name, 0, status);
  if (!file.isOpen()) return;
  if (S_ISREG(status.st_mode)) {
    visitor_.file({path_, name.c_str(), status}, file.get());
  } else {
    report_.fail(shownPath(), "is no longer a file");
  }
}

void TreeWalk::visitLink(const std::string& name, const struct stat& status) {
  std::array<char, PATH_MAX + 1> target{};
  const ssize_t length = ::readlinkat(folders_.top(), name.c_str(), target.data(), target.size());
  if (length < 0) {
    report_.failErrno(shownPath());
  } else {
    visitor_.link({path_, name.c_str(), status},
                  std::string(target.data(), static_cast<std::size_t>(length)));
  }
}

void TreeWalk::leave() {
  const Level level = std::move(levels_.back());
  levels_.pop_back();
  if (levels_.empty()) return;
  path_.resize(level.pathLength);
  const auto slash = path_.rfind('/');
  const char* name = path_.c_str() + (slash == std::string::npos ? 0 : slash + 1);
  visitor_.leaveFolder({path_, name, level.status}, folders_.top());
  if (folders_.pop()) return;
  report_.fail(shownPath(), "was moved while it was read");
  lost_ = true;
}

}  // namespace corvane::ditto
