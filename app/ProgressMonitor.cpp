#include "app/ProgressMonitor.h"

#include <utility>

#include "app/FolderSize.h"

namespace corvane {
namespace {

constexpr double kCheckInterval = 5.0;  // seconds

}  // namespace

ProgressMonitor::ProgressMonitor(ActivityBar& bar, RunLoop& runLoop, const RunRecord& record,
                                 std::string mailFolder)
    : bar_(bar), runLoop_(runLoop), record_(record), mailFolder_(std::move(mailFolder)) {}

// There is no -1 for a number that cannot be read: reading one never fails here, it gives 0 at worst.
void ProgressMonitor::getMailFolderSize() {
  if (const auto size = measureFolder(mailFolder_)) mailFolderSize_ = *size;
}

void ProgressMonitor::startMailFolderCheckAtDestination() {
  if (displayTimer_) {
    displayTimer_.reset();
    return;
  }
  mailCheckStarted_ = true;
  bar_.showPercentage();
  displayTimer_ = runLoop_.repeat(kCheckInterval, [this] { updateTimerFired(); });
}

void ProgressMonitor::stopMailFolderCheckAtDestination() {
  displayTimer_.reset();
  bar_.startActivity();
}

// A size of 0 gives no finite percentage; the bar copes with that.
void ProgressMonitor::updateTimerFired() {
  if (const auto size = measureFolder(record_.mailSizeTempFolder)) {
    bar_.setPercentage(percentageOf(*size, mailFolderSize_));
  } else {
    stopMailFolderCheckAtDestination();
  }
}

}  // namespace corvane
