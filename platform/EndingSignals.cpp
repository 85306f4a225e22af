#include "platform/EndingSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "process/EndRequest.h"

namespace corvane {
namespace {

volatile std::sig_atomic_t wakeUp = -1;  // the pipe's writing end
volatile std::sig_atomic_t lastSignal = 0;

// A pipe that is full holds the news already.
extern "C" void noteEndingSignal(int signal) {
  const int problem = errno;
  const char byte = 0;
  lastSignal = signal;
  requestEnd();
  [[maybe_unused]] const ssize_t ignored = ::write(wakeUp, &byte, 1);
  errno = problem;
}

void handleWith(void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  for (const int signal : kEndingSignals) {
    struct sigaction before {};
    if (::sigaction(signal, nullptr, &before) == 0 && before.sa_handler == SIG_IGN) continue;
    ::sigaction(signal, &action, nullptr);
  }
}

}  // namespace

void endAtOnceOnSignals() { handleWith(SIG_DFL); }

EndAtOnceOnSignals::EndAtOnceOnSignals() {
  for (std::size_t i = 0; i < kEndingSignals.size(); ++i) {
    ::sigaction(kEndingSignals[i], nullptr, &before_[i]);
  }
  endAtOnceOnSignals();
  if (isEndRequested()) std::raise(lastSignal);
}

EndAtOnceOnSignals::~EndAtOnceOnSignals() {
  for (std::size_t i = 0; i < kEndingSignals.size(); ++i) {
    ::sigaction(kEndingSignals[i], &before_[i], nullptr);
  }
}

EndingSignals::EndingSignals(RunLoop& runLoop, std::function<void()> end) {
  if (!pipe_.isOpen()) return;
  ::fcntl(pipe_.writeEnd, F_SETFL, O_NONBLOCK);
  reader_ = runLoop.read(pipe_.readEnd, [end = std::move(end)](std::string_view bytes) {
    if (!bytes.empty()) end();
  });
  wakeUp = pipe_.writeEnd;
  forgetEndRequest();
  takeOver();
}

EndingSignals::~EndingSignals() {
  endAtOnceOnSignals();
  wakeUp = -1;
}

void EndingSignals::takeOver() {
  if (reader_) handleWith(noteEndingSignal);
}

}  // namespace corvane
