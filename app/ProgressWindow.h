// Ports: what a run shows. One object may stand behind all of them; each user gets only what it needs.
// Owner: the composition root. Thread: main. Texts are UTF-8.
#pragma once

#include <functional>
#include <string>

namespace corvane {

/// The two texts of the window.
class StatusDisplay {
 public:
  virtual ~StatusDisplay() = default;
  virtual void setHeadline(const std::string& text) = 0;
  /// Shows the status and is on the screen when it returns: what follows may block the main thread.
  virtual void setStatus(const std::string& text) = 0;
  /// The whole text that was last set, however much of it fits the window.
  [[nodiscard]] virtual const std::string& status() const = 0;
};

/// The bar that moves while something goes on. It can show a percentage instead.
class ActivityBar {
 public:
  virtual ~ActivityBar() = default;
  virtual void startActivity() = 0;
  virtual void stopActivity() = 0;
  /// From now on the bar shows a percentage, 0 at first; `startActivity` makes it move again.
  virtual void showPercentage() = 0;
  /// Any number, infinite ones included: the bar itself stays within its ends.
  virtual void setPercentage(double percentage) = 0;
};

/// The bar that counts the steps of the script.
class StepBar {
 public:
  virtual ~StepBar() = default;
  virtual void setStepMaximum(double maximum) = 0;
  virtual void advanceSteps(double delta) = 0;
};

/// A point of the screen; the origin is the lower left corner.
struct ScreenPoint {
  double x = 0;
  double y = 0;
};

class ProgressWindow {
 public:
  virtual ~ProgressWindow() = default;

  /// Makes the window beside `point`, to its right and extending upward, with both bars (the activity bar
  /// moving, the step bar at 0), the status line, and no log button; and brings it to the front without
  /// taking the keyboard from the user's application.
  virtual void open(ScreenPoint point) = 0;

  /// Takes bars and status line away and offers the log instead.
  virtual void showFailure() = 0;

  /// The run is over and failed: nothing happens until the user presses a button. A display that has no user
  /// calls `dismiss` instead, after it has returned from this.
  virtual void awaitDismissal(std::function<void()> dismiss) = 0;

  /// From 1.0 (solid) down to 0.0 and below (gone).
  [[nodiscard]] virtual double opacity() const = 0;
  virtual void setOpacity(double opacity) = 0;

  /// Takes the window off the screen for good, solid again, and releases it.
  virtual void close() = 0;
};

}  // namespace corvane
