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

class Copier : public TreeVisitor {
 public:
  Copier(Descriptor destination, const Options& options, Report& report)
      : folders_(std::move(destination)), root_(folders_.identity()), options_(options), report_(report) {}

  bool enterFolder(const WalkItem& item) override;
  void leaveFolder(const WalkItem& item, int folder) override;
  void file(const WalkItem& item, int file) override;
  void link(const WalkItem& item, const std::string& target) override;
  bool mustStop() const override { return lost_; }

 private:
  [[nodiscard]] std::string shown(const WalkItem& item) const {
    return below(options_.destination, item.path);
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
  const Transfer transfer = readWhole(file, status.st_size, take, cause);
  if (transfer == Transfer::unreadable) return report.fail(shown.from, cause);
  if (transfer == Transfer::unwritable) return report.fail(shown.to, cause);
  if (!copyAttributes(file, status, target.file(), kept) || !target.putInPlace()) report.failErrno(shown.to);
}

bool Copier::enterFolder(const WalkItem& item) {
  // The destination may lie in the source: it would be copied into itself without end.
  if (FileIdentity(item.status) == root_) return false;
  Descriptor folder = makeFolder(folders_.top(), item.name, S_IRWXU);
  if (!folder.isOpen()) {
    report_.failErrno(shown(item));
    return false;
  }
  folders_.push(std::move(folder));
  return true;
}

void Copier::leaveFolder(const WalkItem& item, int folder) {
  if (!copyAttributes(folder, item.status, folders_.top(), keptAttributes(options_))) {
    report_.failErrno(shown(item));
  }
  if (folders_.pop()) return;
  report_.fail(shown(item), "was moved while it was written");
  lost_ = true;
}

void Copier::file(const WalkItem& item, int file) {
  TargetFile target(folders_.top(), item.name);
  copyFile(file, item.status, target, {below(options_.source, item.path), shown(item)},
           keptAttributes(options_), report_);
}

void Copier::link(const WalkItem& item, const std::string& target) {
  report_.progress(below(options_.source, item.path));
  TargetFile copy(folders_.top(), item.name);
  if (!copy.createLink(target) ||
      !setLinkAttributes(folders_.top(), copy.temporaryName().c_str(), item.status) || !copy.putInPlace()) {
    report_.failErrno(shown(item));
  }
}

void copyFolder(Descriptor source, const struct stat& status, const Options& options, Report& report) {
  bool isNew = false;
  Descriptor destination = makeFolders(options.destination.c_str(), isNew);
  if (!destination.isOpen()) return report.failErrno(options.destination);
  const Descriptor attributed(::dup(destination.get()));
  const Descriptor original(::dup(source.get()));
  if (!attributed.isOpen() || !original.isOpen()) return report.failErrno(options.destination);
  Copier copier(std::move(destination), options, report);
  TreeWalk(std::move(source), options.source, copier, report).run(options.oneFileSystem);
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
  place.flushName();
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
