// Ports: what a run shows. One object may stand behind all three; each user gets only what it needs.
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

/// The activity bar, which moves while something goes on, and the step bar, which counts.
class ProgressBars {
 public:
  virtual ~ProgressBars() = default;
  virtual void stopActivity() = 0;
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
