#include "process/ChildProcess.h"

#include <poll.h>
#include <sys/wait.h>
#include <cerrno>
#include <csignal>

namespace corvane {
namespace {

constexpr int kPollMilliseconds = 5;
constexpr int kGraceRounds = 2000 / kPollMilliseconds;
constexpr int kLastRounds =
    500 / kPollMilliseconds;  // what was killed may be inside the system, out of reach

}  // namespace

// Our own pid only: a wait for any child would take an exit status away from the frameworks.
bool ChildProcess::groupIsGone() {
  int status = 0;
  if (!status_ && ::waitpid(pid_, &status, WNOHANG) == pid_) status_ = status;
  return ::kill(-pid_, 0) != 0 && errno == ESRCH;  // those of another user are there, too
}

void ChildProcess::terminate() {
  if (over_) return;
  over_ = true;
  ::kill(-pid_, SIGTERM);
  ::kill(-pid_, SIGCONT);  // a stopped program does not see the request before it goes on
  for (int round = 0; !groupIsGone(); ++round) {
    if (round == kGraceRounds) ::kill(-pid_, SIGKILL);
    if (round == kGraceRounds + kLastRounds) return;
    ::poll(nullptr, 0, kPollMilliseconds);
  }
}

bool ChildProcess::leaderHasEnded() const {
  siginfo_t info{};
  return ::waitid(P_PID, static_cast<id_t>(pid_), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
         info.si_pid == pid_;
}

std::optional<int> ChildProcess::fatalSignal() const {
  return status_ && WIFSIGNALED(*status_) ? std::optional(WTERMSIG(*status_)) : std::nullopt;
}

std::optional<int> ChildProcess::ended() { return ask(WNOHANG); }

int ChildProcess::wait() { return ask(0).value_or(-1); }

std::optional<int> ChildProcess::ask(int options) {
  int status = status_.value_or(0);
  while (!status_) {
    const pid_t answer = ::waitpid(pid_, &status, options);
    if (answer == 0) return std::nullopt;
    if (answer == pid_) {
      status_ = status;
    } else if (errno != EINTR) {
      over_ = true;
      return -1;
    }
  }
  over_ = true;  // its number may soon be another's
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace corvane
