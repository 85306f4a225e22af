#include "tools/ditto/ZipArchive.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include "tools/ditto/Crew.h"
#include "tools/ditto/Source.h"
#include "tools/ditto/TargetFile.h"
#include "tools/ditto/TreeWalk.h"
#include "tools/ditto/ZipWriter.h"

namespace corvane::ditto {
namespace {

// The source as a row of items.
class SourceItems {
 public:
  SourceItems(Descriptor source, const struct stat& status, const Options& options, const TargetFile& target)
      : target_(target) {
    const bool isNamed = options.keepParent && !ownName(options.source).empty();
    if (!S_ISDIR(status.st_mode) || isNamed) addRoot(source, status);
    if (S_ISDIR(status.st_mode)) walk_.emplace(std::move(source), options.oneFileSystem);
  }

  bool next(Item& item) {
    if (root_) {
      item = *std::exchange(root_, std::nullopt);
      return true;
    }
    while (walk_ && walk_->next(step_)) {
      const FolderStack& folders = walk_->folders();
      const bool isEntry = step_.kind == WalkStep::file || step_.kind == WalkStep::link;
      if (step_.kind == WalkStep::leave) continue;
      if (isEntry && target_.isNamed(folders.identity(), step_.lastName())) continue;
      item = {step_, isEntry ? folders.share() : nullptr};
      return true;
    }
    return false;
  }

 private:
  void addRoot(Descriptor& source, const struct stat& status) {
    WalkStep step;
    step.kind = S_ISDIR(status.st_mode) ? WalkStep::enter : WalkStep::file;
    step.status = status;
    Descriptor kept = S_ISDIR(status.st_mode) ? Descriptor() : std::move(source);
    root_ = Item{step, std::make_shared<const Descriptor>(std::move(kept))};
  }

  const TargetFile& target_;
  std::optional<Item> root_;
  std::optional<TreeWalk> walk_;
  WalkStep step_;
};

ArchiveNames namesFor(const Options& options, const struct stat& status) {
  ArchiveNames names{options.source, ownName(options.source), ""};
  const bool hasParent = S_ISDIR(status.st_mode) && options.keepParent && !names.root.empty();
  if (hasParent) names.prefix = names.root + '/';
  return names;
}

// After a failure nothing is written any more; the walk goes on for the sake of the report, since what cannot
// be opened is better named all at once than run by run.
void deliver(const Piece& piece, ZipWriter& writer, Outbox& outbox, const Options& options, Report& report) {
  for (const Message& message : piece.messages) {
    if (message.cause.empty()) {
      report.progress(message.path);
    } else {
      report.fail(message.path, message.cause);
    }
  }
  if (report.failed()) {
    if (outbox.demand() == Demand::everything) outbox.setDemand(Demand::failures);
  } else if (!writer.add(piece)) {
    report.failErrno(options.destination);
    outbox.setDemand(Demand::nothing);
  }
}

void archive(const ArchiveNames& names, SourceItems& items, TargetFile& target, const Options& options,
             Report& report) {
  const std::size_t threads = options.threads > 0 ? options.threads : usefulThreads();
  WorkQueue queue([&items](Item& item) { return items.next(item); });
  Outbox outbox(threads);
  ZipWriter writer(target);
  const Crew crew(threads, {names, options.verbose, queue, outbox});
  while (outbox.demand() != Demand::nothing) {
    auto piece = outbox.next();
    if (!piece) break;
    deliver(*piece, writer, outbox, options, report);
  }
  const std::string problem = outbox.problem();
  if (!problem.empty()) report.fail(options.source, problem);
  if (!report.failed() && !writer.finish()) report.failErrno(options.destination);
}

}  // namespace

void createArchive(const Options& options, Report& report) {
  struct stat status {};
  Descriptor source = openSource(options.source, status, report);
  if (!source.isOpen()) return;
  const TargetPlace place(options.destination);
  if (!place.folder.isOpen()) return report.failErrno(options.destination);
  TargetFile target(place.folder.get(), place.name);
  if (target.wouldReplace(FileIdentity(status))) {
    return report.fail(options.destination, "is the source itself");
  }
  if (!target.create()) return report.failErrno(options.destination);
  const ArchiveNames names = namesFor(options, status);
  SourceItems items(std::move(source), status, options, target);
  archive(names, items, target, options, report);
  if (report.failed()) return;
  if (!target.putInPlaceForGood()) report.failErrno(options.destination);
}

}  // namespace corvane::ditto
