#include "tools/ditto/ZipArchive.h"

#include <cerrno>
#include <utility>

#include "tools/ditto/Source.h"
#include "tools/ditto/TargetFile.h"
#include "tools/ditto/TreeWalk.h"
#include "tools/ditto/ZipWriter.h"

namespace corvane::ditto {
namespace {

class Archiver : public TreeVisitor {
 public:
  Archiver(const Options& options, TargetFile& target, Report& report)
      : options_(options), target_(target), writer_(target), report_(report) {}

  void archive(Descriptor source, const struct stat& status);

  bool leavesOut(const FileIdentity& folder, const std::string& name) const override {
    return target_.isNamed(folder, name);
  }
  bool enterFolder(const WalkItem& item) override;
  void leaveFolder(const WalkItem&, int) override {}
  void file(const WalkItem& item, int file) override;
  void link(const WalkItem& item, const std::string& target) override;
  bool mustStop() const override { return unwritable_; }

 private:
  void archiveFolder(Descriptor source, const struct stat& status);
  void note(Transfer transfer, const std::string& shown);
  [[nodiscard]] std::string shown(const WalkItem& item) const { return below(options_.source, item.path); }

  const Options& options_;
  TargetFile& target_;
  ZipWriter writer_;
  Report& report_;
  std::string prefix_;  // of every name in the archive
  bool unwritable_ = false;
};

void Archiver::archive(Descriptor source, const struct stat& status) {
  if (S_ISDIR(status.st_mode)) {
    archiveFolder(std::move(source), status);
  } else {
    report_.progress(options_.source);
    note(writer_.addFile(ownName(options_.source), status, source.get()), options_.source);
  }
  if (!report_.failed() && !writer_.finish()) note(Transfer::unwritable, "");
}

void Archiver::archiveFolder(Descriptor source, const struct stat& status) {
  const std::string parent = options_.keepParent ? ownName(options_.source) : "";
  if (!parent.empty()) {
    note(writer_.addFolder(parent, status), options_.source);
    prefix_ = parent + '/';
  }
  TreeWalk(std::move(source), options_.source, *this, report_).run(options_.oneFileSystem);
}

void Archiver::note(Transfer transfer, const std::string& shown) {
  if (transfer == Transfer::unreadable) report_.fail(shown, writer_.cause());
  if (transfer != Transfer::unwritable) return;
  unwritable_ = true;
  report_.fail(options_.destination, writer_.cause());
}

bool Archiver::enterFolder(const WalkItem& item) {
  if (!report_.failed()) note(writer_.addFolder(prefix_ + item.path, item.status), shown(item));
  return !unwritable_;
}

// After a failure nothing is added any more; the walk goes on for the sake of the report, since what cannot
// be opened is better named all at once than run by run.
void Archiver::file(const WalkItem& item, int file) {
  if (report_.failed()) return;
  report_.progress(shown(item));
  note(writer_.addFile(prefix_ + item.path, item.status, file), shown(item));
}

void Archiver::link(const WalkItem& item, const std::string& target) {
  if (report_.failed()) return;
  report_.progress(shown(item));
  note(writer_.addLink(prefix_ + item.path, item.status, target), shown(item));
}

// The permissions that the user's other new files have. A file system without permissions is no obstacle.
void giveUsualMode(int file) {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  ::fchmod(file, DEFFILEMODE & ~mask);
}

}  // namespace

void createArchive(const Options& options, Report& report) {
  struct stat status {};
  Descriptor source = openSource(options.source, status, report);
  if (!source.isOpen()) return;
  const TargetPlace place(options.destination);
  if (!place.folder.isOpen()) return report.failErrno(options.destination);
  TargetFile target(place.folder.get(), place.name);
  if (!target.create()) return report.failErrno(options.destination);
  Archiver(options, target, report).archive(std::move(source), status);
  if (report.failed()) return;
  giveUsualMode(target.file());
  if (!target.putInPlace()) return report.failErrno(options.destination);
  place.flushName();
}

}  // namespace corvane::ditto
