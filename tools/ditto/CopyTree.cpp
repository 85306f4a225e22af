#include "tools/ditto/CopyTree.h"

#include <cerrno>
#include <utility>

#include "tools/ditto/Attributes.h"
#include "tools/ditto/Source.h"
#include "tools/ditto/TargetFile.h"
#include "tools/ditto/TreeWalk.h"

namespace corvane::ditto {
namespace {

struct Paths {
  std::string from;  // as shown in messages
  std::string to;
};

class Copier {
 public:
  Copier(Descriptor destination, const Options& options, Report& report)
      : folders_(std::move(destination)), root_(folders_.identity()), options_(options), report_(report) {}

  void copy(TreeWalk walk);

 private:
  [[nodiscard]] bool enterFolder(const WalkStep& step, FileIdentity source);
  void leaveFolder(const WalkStep& step, int source);
  void copyOneFile(const WalkStep& step, int source);
  void copyLink(const WalkStep& step, int source);
  [[nodiscard]] std::string shown(const WalkStep& step) const {
    return below(options_.destination, step.path);
  }
  [[nodiscard]] std::string shownSource(const WalkStep& step) const {
    return step.path.empty() ? options_.source : below(options_.source, step.path);
  }

  FolderStack folders_;
  FileIdentity root_;
  const Options& options_;
  Report& report_;
  bool lost_ = false;
};

KeptAttributes keptAttributes(const Options& options) {
  return {options.extendedAttributes, options.accessControlLists};
}

void copyFile(int file, const struct stat& status, TargetFile& target, const Paths& shown,
              const KeptAttributes& kept, Report& report) {
  report.progress(shown.from);
  if (!target.create()) return report.failErrno(shown.to);
  std::string cause;
  const auto take = [&](std::span<const char> bytes) { return target.write(bytes); };
  const Transfer transfer = readWhole(file, status, take, cause);
  if (transfer == Transfer::unreadable) return report.fail(shown.from, cause);
  if (transfer == Transfer::unwritable) return report.fail(shown.to, cause);
  if (!copyAttributes(file, status, target.file(), kept) || !target.putInPlace()) report.failErrno(shown.to);
}

void Copier::copy(TreeWalk walk) {
  for (WalkStep step; !lost_ && walk.next(step);) {
    const int source = walk.folders().top();
    switch (step.kind) {
      case WalkStep::file:
        copyOneFile(step, source);
        break;
      case WalkStep::link:
        copyLink(step, source);
        break;
      case WalkStep::enter:
        if (!enterFolder(step, walk.folders().identity())) walk.skip();
        break;
      case WalkStep::leave:
        leaveFolder(step, source);
        break;
      case WalkStep::failure:
        report_.fail(shownSource(step), step.cause);
    }
  }
}

bool Copier::enterFolder(const WalkStep& step, FileIdentity source) {
  // The destination may lie in the source: it would be copied into itself without end.
  if (source == root_) return false;
  Descriptor folder = makeFolder(folders_.top(), step.lastName(), S_IRWXU);
  if (!folder.isOpen()) {
    report_.failErrno(shown(step));
    return false;
  }
  folders_.push(std::move(folder));
  return true;
}

void Copier::leaveFolder(const WalkStep& step, int source) {
  if (!copyAttributes(source, step.status, folders_.top(), keptAttributes(options_))) {
    report_.failErrno(shown(step));
  }
  if (folders_.pop()) return;
  report_.fail(shown(step), "was moved while it was written");
  lost_ = true;
}

void Copier::copyOneFile(const WalkStep& step, int source) {
  struct stat status {};
  std::string cause;
  const Descriptor file = openFile(source, step.lastName(), status, cause);
  if (!file.isOpen()) return report_.fail(shownSource(step), cause);
  TargetFile target(folders_.top(), step.lastName());
  copyFile(file.get(), status, target, {shownSource(step), shown(step)}, keptAttributes(options_), report_);
}

void Copier::copyLink(const WalkStep& step, int source) {
  struct stat status {};
  std::string linked;
  std::string cause;
  if (!readLink(source, step.lastName(), linked, status, cause)) {
    return report_.fail(shownSource(step), cause);
  }
  report_.progress(shownSource(step));
  TargetFile copy(folders_.top(), step.lastName());
  if (!copy.createLink(linked) || !setLinkAttributes(folders_.top(), copy.temporaryName().c_str(), status) ||
      !copy.putInPlace()) {
    report_.failErrno(shown(step));
  }
}

void copyFolder(Descriptor source, const struct stat& status, const Options& options, Report& report) {
  bool isNew = false;
  Descriptor destination = makeFolders(options.destination.c_str(), isNew);
  if (!destination.isOpen()) return report.failErrno(options.destination);
  const Descriptor attributed(::dup(destination.get()));
  const Descriptor original(::dup(source.get()));
  if (!attributed.isOpen() || !original.isOpen()) return report.failErrno(options.destination);
  Copier(std::move(destination), options, report).copy(TreeWalk(std::move(source), options.oneFileSystem));
  // A folder that was there before may be anything, even the root of a volume: it keeps its own.
  if (isNew && !copyAttributes(original.get(), status, attributed.get(), keptAttributes(options))) {
    report.failErrno(options.destination);
  }
}

void copySingleFile(int source, const struct stat& status, const Options& options, Report& report) {
  struct stat there {};
  std::string path = options.destination;
  if (::stat(path.c_str(), &there) == 0 && S_ISDIR(there.st_mode))
    path = below(path, ownName(options.source));
  const TargetPlace place(path);
  if (!place.folder.isOpen()) return report.failErrno(path);
  TargetFile target(place.folder.get(), place.name);
  copyFile(source, status, target, {options.source, path}, keptAttributes(options), report);
  if (!report.failed() && !place.flushName()) report.failErrno(path);
}

}  // namespace

void copyTree(const Options& options, Report& report) {
  struct stat status {};
  Descriptor source = openSource(options.source, status, report);
  if (!source.isOpen()) return;
  if (S_ISDIR(status.st_mode)) {
    copyFolder(std::move(source), status, options, report);
  } else {
    copySingleFile(source.get(), status, options, report);
  }
}

}  // namespace corvane::ditto
