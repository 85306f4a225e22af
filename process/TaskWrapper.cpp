#include "process/TaskWrapper.h"

#include <poll.h>
#include <csignal>
#include <cstring>
#include <utility>

#include "process/EndRequest.h"
#include "process/Log.h"
#include "process/ScriptInterpreter.h"

namespace corvane {
namespace {

using Clock = std::chrono::steady_clock;

constexpr double kWatchInterval = 2.5;  // seconds
constexpr std::chrono::seconds kPatience{5};
constexpr std::chrono::seconds kPatienceWithReading{60};  // one that writes without end is no reason to go on

}  // namespace

TaskWrapper::TaskWrapper(RunLoop& runLoop, TaskController& controller, std::vector<std::string> arguments,
                         std::string toolsFolder)
    : runLoop_(runLoop),
      controller_(&controller),
      arguments_(std::move(arguments)),
      toolsFolder_(std::move(toolsFolder)) {}

void TaskWrapper::startProcess() {
  started_ = true;
  controller_->processStarted();
  if (!controller_) return;  // stopped by the very news
  pipe_ = std::make_unique<Pipe>();
  if (!pipe_->isOpen()) {
    log("cannot start " + arguments_.front() + ": no descriptors left");
    stopProcess();
    return;
  }
  reader_ = runLoop_.read(pipe_->readEnd, [this](std::string_view bytes) { getData(bytes); });
  launch();
}

void TaskWrapper::launch() {
  LaunchCommand command = commandForScript(arguments_, toolsFolder_);
  // A command of the script that goes on where it could not go must not meet the user's own files.
  command.folder = arguments_.front().substr(0, arguments_.front().find_last_of('/') + 1);
  if (!isEndRequested()) {
    const Spawned spawned = spawn(command, pipe_->writeEnd);
    if (spawned.pid >= 0) task_.emplace(spawned.pid);
    if (!spawned.problem.empty()) log(spawned.problem);
  }
  pipe_->closeWriteEnd();  // so that the output ends with the child, or at once when there is none
  if (task_) watch_ = runLoop_.repeat(kWatchInterval, [this] { lookForLeftOnes(); });
}

// They hold the output, and nobody else has anything to say: it would be waited for as long as they run.
void TaskWrapper::lookForLeftOnes() {
  if (!task_->leaderHasEnded()) return;
  const auto now = Clock::now();
  if (!childEnded_) childEnded_ = now;
  pollfd output{pipe_->readEnd, POLLIN, 0};
  const bool isUnread = ::poll(&output, 1, 0) > 0 && (output.revents & POLLIN) != 0;
  if (now - *childEnded_ < (isUnread ? kPatienceWithReading : kPatience)) return;
  log(arguments_.front() + " has ended, but not all that it started: that is ended now");
  stopProcess();
}

void TaskWrapper::getData(std::string_view bytes) {
  if (bytes.empty()) {
    stopProcess();
    return;
  }
  const std::string text = decoder_.decode(bytes);
  if (!text.empty() && controller_) controller_->appendOutput(text);
}

void TaskWrapper::stopProcess() {
  if (!started_) return;
  reader_.reset();
  watch_.reset();
  if (task_) task_->terminate();
  TaskController* controller = std::exchange(controller_, nullptr);
  if (!controller) return;
  logFatalSignal();
  controller->processFinished();
}

void TaskWrapper::abandonProcess() {
  controller_ = nullptr;
  if (task_) task_->terminate();
}

// One that was asked to end has been asked by us: after it had closed its output, or for a cancel.
void TaskWrapper::logFatalSignal() const {
  const auto signal = task_ ? task_->fatalSignal() : std::nullopt;
  if (!signal || *signal == SIGTERM) return;
  log(arguments_.front() + " was ended by signal " + std::to_string(*signal) + ": " + ::strsignal(*signal));
}

}  // namespace corvane
