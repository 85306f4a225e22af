// The end of the program from outside: a logout, a shutdown, `kill`, Ctrl-C.
// Owner: the composition root; one at a time. Thread: main.
//
// A signal is noted at once, so that nothing the run is waiting for holds it up (process/EndRequest), and
// served as a cancel as soon as the run loop is. A window system that is asked to end the program inside a
// signal handler, as some do by themselves, may wait for itself for ever.
#pragma once

#include <array>
#include <csignal>
#include <functional>
#include <memory>

#include "process/RunLoop.h"
#include "process/Spawn.h"

namespace corvane {

/// TERM, INT and HUP. One that whoever started the program chose to ignore stays ignored.
inline constexpr std::array<int, 3> kEndingSignals{SIGTERM, SIGINT, SIGHUP};

/// From now on these signals end the program at once, whatever a library has installed: for the time before
/// there is anything to clean up.
void endAtOnceOnSignals();

/// The same while it exists, for the time that a question is up, whose user is not asked any more; a signal
/// that has come already ends the program here.
class EndAtOnceOnSignals {
 public:
  EndAtOnceOnSignals();
  ~EndAtOnceOnSignals();
  EndAtOnceOnSignals(const EndAtOnceOnSignals&) = delete;
  EndAtOnceOnSignals& operator=(const EndAtOnceOnSignals&) = delete;

 private:
  std::array<struct sigaction, kEndingSignals.size()> before_{};
};

/// While it exists, these signals call `end` on the run loop, outside of any signal handler; also those that
/// come before the run loop is served.
class EndingSignals {
 public:
  EndingSignals(RunLoop& runLoop, std::function<void()> end);
  ~EndingSignals();
  EndingSignals(const EndingSignals&) = delete;
  EndingSignals& operator=(const EndingSignals&) = delete;

  /// Takes the signals back from a library that has installed handlers of its own since.
  void takeOver();

 private:
  Pipe pipe_;
  std::unique_ptr<RunLoop::Source> reader_;
};

}  // namespace corvane
