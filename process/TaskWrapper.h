// Runs one child process and feeds its output, chunk by chunk, to a controller.
// Owner: the controller, which must outlive it or stop it. Thread: main; all callbacks arrive there.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "process/ChildProcess.h"
#include "process/RunLoop.h"
#include "process/Spawn.h"
#include "process/Utf8Decoder.h"

namespace corvane {

class TaskController {
 public:
  virtual ~TaskController() = default;
  virtual void processStarted() = 0;
  /// Text of one read: several lines, or part of one. Valid UTF-8, never empty.
  virtual void appendOutput(const std::string& output) = 0;
  /// Called once for a started process: at the end of its output or when it is stopped; never for one that
  /// is abandoned.
  virtual void processFinished() = 0;
};

class TaskWrapper {
 public:
  /// `arguments` holds the path of the script to run and then its own arguments; `toolsFolder` is added to
  /// the end of the child's PATH.
  TaskWrapper(RunLoop& runLoop, TaskController& controller, std::vector<std::string> arguments,
              std::string toolsFolder);
  ~TaskWrapper() { stopProcess(); }
  TaskWrapper(const TaskWrapper&) = delete;
  TaskWrapper& operator=(const TaskWrapper&) = delete;

  /// Starts the child with one pipe for its standard output and standard error, in the script's own folder. A
  /// child that cannot be started is logged and reported like one that ends without a word; so is one that
  /// is not started because this program has been asked to end. What the child started and left behind is
  /// given five to ten seconds to close the output.
  void startProcess();

  /// Ends the child and all that it started, and reports the end to the controller. A second call, and one
  /// before the start, does nothing.
  void stopProcess();

  /// Ends the child and all that it started, and reports nothing any more: for a program that is ending
  /// itself, from wherever it stands.
  void abandonProcess();

 private:
  void launch();
  void getData(std::string_view bytes);
  void logFatalSignal() const;
  void lookForLeftOnes();

  RunLoop& runLoop_;
  TaskController* controller_;  // null once the end has been reported
  const std::vector<std::string> arguments_;
  const std::string toolsFolder_;
  Utf8Decoder decoder_;
  std::unique_ptr<Pipe> pipe_;  // outlives the reader
  std::unique_ptr<RunLoop::Source> reader_;
  std::optional<ChildProcess> task_;
  std::unique_ptr<RunLoop::Source> watch_;
  std::optional<std::chrono::steady_clock::time_point> childEnded_;  // when that was first seen
  bool started_ = false;
};

}  // namespace corvane
