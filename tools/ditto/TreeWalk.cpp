#include "tools/ditto/TreeWalk.h"

#include <dirent.h>
#include <fcntl.h>
#include <cerrno>
#include <cstring>
#include <utility>

namespace corvane::ditto {
namespace {

unsigned char kindOf(int folder, const char* name) {
  struct stat status {};
  if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return DT_UNKNOWN;
  return static_cast<unsigned char>(IFTODT(status.st_mode));
}

const char* causeFor(unsigned char kind) {
  switch (kind) {
    case DT_UNKNOWN:
      return std::strerror(errno);
    case DT_FIFO:
      return "cannot be saved: it is a named pipe";
    case DT_SOCK:
      return "cannot be saved: it is a socket";
    default:
      return "cannot be saved: it is a device";
  }
}

}  // namespace

TreeWalk::TreeWalk(Descriptor root, bool oneFileSystem)
    : folders_(std::move(root)), oneFileSystem_(oneFileSystem), levels_(1) {
  struct stat status {};
  if (::fstat(folders_.top(), &status) == 0) device_ = status.st_dev;
  levels_.back().status = status;
}

void TreeWalk::fail(WalkStep& step) const {
  step.kind = WalkStep::failure;
  step.cause = std::strerror(errno);
}

bool TreeWalk::next(WalkStep& step) {
  const Pending pending = std::exchange(pending_, Pending::none);
  if (pending == Pending::list && !levels_.back().names.read(folders_.top())) {
    fail(step);
    return true;
  }
  if (pending == Pending::pop && !folders_.pop()) {
    step.kind = WalkStep::failure;
    step.cause = "was moved while it was read";
    levels_.clear();
    return true;
  }
  if (levels_.empty()) return false;
  Level& level = levels_.back();
  step.path.resize(level.pathLength);
  if (level.next < level.names.size()) {
    visit(level.next++, step);
    return true;
  }
  if (levels_.size() == 1) return false;
  leave(step);
  return true;
}

void TreeWalk::visit(std::size_t index, WalkStep& step) {
  const FolderListing& names = levels_.back().names;
  const char* name = names.name(index);
  if (!step.path.empty()) step.path += '/';
  step.name = step.path.size();
  step.path += name;
  unsigned char kind = names.kind(index);
  if (kind == DT_UNKNOWN) kind = kindOf(folders_.top(), name);
  if (kind == DT_DIR) return enter(step);
  if (kind == DT_REG || kind == DT_LNK) {
    step.kind = kind == DT_REG ? WalkStep::file : WalkStep::link;
    return;
  }
  step.kind = WalkStep::failure;
  step.cause = causeFor(kind);
}

void TreeWalk::enter(WalkStep& step) {
  constexpr int kFolder = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
  Descriptor folder(::openat(folders_.top(), step.lastName(), kFolder));
  if (!folder.isOpen() || ::fstat(folder.get(), &step.status) != 0) return fail(step);
  step.kind = WalkStep::enter;
  folders_.push(std::move(folder));
  Level& level = levels_.emplace_back();
  level.pathLength = step.path.size();
  level.status = step.status;
  const bool isElsewhere = oneFileSystem_ && step.status.st_dev != device_;
  pending_ = isElsewhere ? Pending::none : Pending::list;
}

void TreeWalk::skip() {
  levels_.pop_back();
  pending_ = Pending::pop;
}

void TreeWalk::leave(WalkStep& step) {
  step.kind = WalkStep::leave;
  step.status = levels_.back().status;
  step.name = levels_[levels_.size() - 2].pathLength;
  if (step.name > 0) ++step.name;
  levels_.pop_back();
  pending_ = Pending::pop;
}

}  // namespace corvane::ditto
