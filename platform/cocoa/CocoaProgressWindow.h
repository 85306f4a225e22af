// The progress window: an attached window around the view of the interface file.
// Owner: the interface file's controller object, which also owns the views. Thread: main.
#pragma once

#import <AppKit/AppKit.h>

#include <string>

#include "app/ProgressWindow.h"

@class PLAttachedWindow;

namespace corvane {

/// The outlets of the interface file; borrowed.
struct ProgressViews {
  NSView* backupNowView;
  NSProgressIndicator* backupProgress;
  NSProgressIndicator* overallProgress;
  NSTextField* modeTextField;
  NSTextField* backupNowStatus;
  NSTextField* failureHint;
  NSButton* openLogButton;
};

class CocoaProgressWindow : public StatusDisplay, public ActivityBar, public StepBar, public ProgressWindow {
 public:
  explicit CocoaProgressWindow(const ProgressViews& views) : views_(views) {}
  ~CocoaProgressWindow() override { close(); }
  CocoaProgressWindow(const CocoaProgressWindow&) = delete;
  CocoaProgressWindow& operator=(const CocoaProgressWindow&) = delete;

  void setHeadline(const std::string& text) override;
  void setStatus(const std::string& text) override;
  [[nodiscard]] const std::string& status() const override { return status_; }

  void startActivity() override;
  void stopActivity() override;
  void showPercentage() override;
  void setPercentage(double percentage) override;
  void setStepMaximum(double maximum) override;
  void advanceSteps(double delta) override;

  void open(ScreenPoint point) override;
  void showFailure() override;
  void awaitDismissal(std::function<void()> /*dismiss*/) override {}  // the user has the buttons
  [[nodiscard]] double opacity() const override;
  void setOpacity(double opacity) override;
  void close() override;

 private:
  void startBars();
  void dress();

  const ProgressViews views_;
  PLAttachedWindow* backupNowWindow_ = nil;
  std::string status_;
};

}  // namespace corvane
