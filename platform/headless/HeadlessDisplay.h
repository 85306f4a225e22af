// A display for nobody: the status goes to the log only, and a failed run is dismissed at once.
// Owner: the headless main. Thread: main.
#pragma once

#include <memory>
#include <string>

#include "app/ProgressWindow.h"
#include "process/RunLoop.h"

namespace corvane {

class HeadlessDisplay : public StatusDisplay, public ActivityBar, public StepBar, public ProgressWindow {
 public:
  explicit HeadlessDisplay(RunLoop& runLoop) : runLoop_(runLoop) {}

  void setHeadline(const std::string& /*text*/) override {}
  void setStatus(const std::string& text) override { status_ = text; }
  [[nodiscard]] const std::string& status() const override { return status_; }

  void startActivity() override {}
  void stopActivity() override {}
  void showPercentage() override {}
  void setPercentage(double /*percentage*/) override {}
  void setStepMaximum(double /*maximum*/) override {}
  void advanceSteps(double /*delta*/) override {}

  void open(ScreenPoint /*point*/) override {}
  void showFailure() override {}
  void awaitDismissal(std::function<void()> dismiss) override;
  [[nodiscard]] double opacity() const override { return 0.0; }  // nothing to fade
  void setOpacity(double /*opacity*/) override {}
  void close() override {}

 private:
  RunLoop& runLoop_;
  std::string status_;
  std::unique_ptr<RunLoop::Source> dismissal_;
};

}  // namespace corvane
