#include "platform/EndingSignals.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <utility>

namespace corvane {
namespace {

constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP};
volatile std::sig_atomic_t wakeUp = -1;  // the pipe's writing end

extern "C" void noteEndingSignal(int /*signal*/) {
  const int problem = errno;
  const char byte = 0;
  [[maybe_unused]] const ssize_t ignored = ::write(wakeUp, &byte, 1);
  errno = problem;
}

void handleWith(void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  for (const int signal : kSignals) {
    struct sigaction before {};
    if (::sigaction(signal, nullptr, &before) == 0 && before.sa_handler == SIG_IGN) continue;
    ::sigaction(signal, &action, nullptr);
  }
}

}  // namespace

void endAtOnceOnSignals() { handleWith(SIG_DFL); }

EndingSignals::EndingSignals(RunLoop& runLoop, std::function<void()> end) {
  if (!pipe_.isOpen()) return;
  reader_ = runLoop.read(pipe_.readEnd, [end = std::move(end)](std::string_view) { end(); });
  wakeUp = pipe_.writeEnd;
  handleWith(noteEndingSignal);
}

EndingSignals::~EndingSignals() { endAtOnceOnSignals(); }

}  // namespace corvane
