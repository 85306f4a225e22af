// A measured progress display for Apple Mail: compares the copy that grows in the staging folder with the
// size of the user's Mail folder. A run measures that folder; the periodic part waits to be started. Owner:
// AppController. Thread: main; every measurement blocks it until the disk usage tool is done.
#pragma once

#include <memory>
#include <string>

#include "app/ProgressWindow.h"
#include "process/RunLoop.h"
#include "script/RunRecord.h"

namespace corvane {

class ProgressMonitor {
 public:
  /// Borrows `bar`, `runLoop` and `record`; the record names the growing folder.
  ProgressMonitor(ActivityBar& bar, RunLoop& runLoop, const RunRecord& record, std::string mailFolder);

  /// Measures the Mail folder; what cannot be measured leaves the size as it was.
  void getMailFolderSize();

  /// Shows the percentage, anew every five seconds. When it already does, that is stopped instead.
  void startMailFolderCheckAtDestination();

  /// Lets the bar move again.
  void stopMailFolderCheckAtDestination();

  void forgetMailCheck() { mailCheckStarted_ = false; }
  [[nodiscard]] bool mailCheckStarted() const { return mailCheckStarted_; }
  /// In the units of the disk usage tool; 0 before the first measurement.
  [[nodiscard]] float mailFolderSize() const { return mailFolderSize_; }

 private:
  void updateTimerFired();

  ActivityBar& bar_;
  RunLoop& runLoop_;
  const RunRecord& record_;
  const std::string mailFolder_;
  float mailFolderSize_ = 0;
  bool mailCheckStarted_ = false;
  std::unique_ptr<RunLoop::Source> displayTimer_;
};

}  // namespace corvane
