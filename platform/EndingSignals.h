// The end of the program from outside: a logout, a shutdown, `kill`, Ctrl-C.
// Owner: the composition root; one at a time. Thread: main.
#pragma once

#include <functional>
#include <memory>

#include "process/RunLoop.h"
#include "process/Spawn.h"

namespace corvane {

/// From now on TERM, INT and HUP end the program at once, whatever a library has installed: for the time
/// before there is anything to clean up.
void endAtOnceOnSignals();

/// While it exists, TERM, INT and HUP call `end` on the run loop, outside of any signal handler: a window
/// system that is asked to end the program inside one may wait for itself for ever. A signal that whoever
/// started the program chose to ignore stays ignored.
class EndingSignals {
 public:
  EndingSignals(RunLoop& runLoop, std::function<void()> end);
  ~EndingSignals();
  EndingSignals(const EndingSignals&) = delete;
  EndingSignals& operator=(const EndingSignals&) = delete;

 private:
  Pipe pipe_;
  std::unique_ptr<RunLoop::Source> reader_;
};

}  // namespace corvane
