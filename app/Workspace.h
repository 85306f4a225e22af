// Port: what a run asks of the user's desktop. No operation reports failure to the run: each logs its own.
// Owner: the composition root. Thread: main.
#pragma once

#include <string>

namespace corvane {

class Workspace {
 public:
  virtual ~Workspace() = default;
  virtual void launchApplication(const std::string& name) = 0;
  virtual void openFile(const std::string& path, const std::string& application) = 0;
  /// Posts a notification to other processes at once, with no object and no user information.
  virtual void postNotification(const std::string& name) = 0;
  /// Ends the program with `status` once the current callback has returned. The first call decides.
  virtual void terminate(int status) = 0;
};

}  // namespace corvane
