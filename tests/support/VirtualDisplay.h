// A screen that nobody sees, for tests of what appears on one: an X server of its own and, if wanted, a
// compositor. Owner: the test program; both end with it, by process id. Thread: one at a time.
#pragma once

#include <memory>
#include <string>

#include "process/ChildProcess.h"

namespace corvane {

class VirtualDisplay {
 public:
  /// Starts the server on the first free display and waits until it answers; see problem().
  explicit VirtualDisplay(int width = 1024, int height = 640);

  /// Why there is no display; empty when there is one.
  [[nodiscard]] const std::string& problem() const { return problem_; }

  /// As programs take it from the variable DISPLAY.
  [[nodiscard]] const std::string& name() const { return name_; }

  /// Windows blend while a compositor runs. False when none could be started within ten seconds.
  [[nodiscard]] bool startCompositor();
  void stopCompositor() { compositor_.reset(); }

 private:
  std::string name_;
  std::string problem_;
  std::unique_ptr<ChildProcess> server_;
  std::unique_ptr<ChildProcess> compositor_;
};

}  // namespace corvane
