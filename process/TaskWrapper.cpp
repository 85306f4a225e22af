#include "process/TaskWrapper.h"

#include <csignal>
#include <cstring>
#include <utility>

#include "process/Log.h"
#include "process/ScriptInterpreter.h"

namespace corvane {

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
  const Spawned spawned = spawn(commandForScript(arguments_, toolsFolder_), pipe_->writeEnd);
  if (spawned.pid >= 0) task_.emplace(spawned.pid);
  if (!spawned.problem.empty()) log(spawned.problem);
  pipe_->closeWriteEnd();  // so that the output ends with the child, or at once when there is none
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
  if (task_) task_->terminate();
  TaskController* controller = std::exchange(controller_, nullptr);
  if (!controller) return;
  logFatalSignal();
  controller->processFinished();
}

// One that was asked to end has been asked by us: after it had closed its output, or for a cancel.
void TaskWrapper::logFatalSignal() const {
  const auto signal = task_ ? task_->fatalSignal() : std::nullopt;
  if (!signal || *signal == SIGTERM) return;
  log(arguments_.front() + " was ended by signal " + std::to_string(*signal) + ": " + ::strsignal(*signal));
}

}  // namespace corvane
