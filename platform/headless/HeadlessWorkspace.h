// A desktop without a desktop: nothing is launched, opened or moved to the Trash, which the log says, and an
// alert gets the answer that changes nothing. Notifications are posted all the same.
// Owner: the headless main. Thread: main.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "app/Workspace.h"
#include "platform/headless/HeadlessRunLoop.h"

namespace corvane {

class HeadlessWorkspace : public Workspace {
 public:
  /// `announce` posts a notification by its name to other processes.
  HeadlessWorkspace(HeadlessRunLoop& runLoop, std::function<void(const std::string&)> announce)
      : runLoop_(runLoop), announce_(std::move(announce)) {}

  void launchApplication(const std::string& name) override;
  void openFile(const std::string& path, const std::string& application) override;
  void noteFileSystemChanged(const std::string& /*path*/) override {}
  void postNotification(const std::string& name) override { announce_(name); }
  [[nodiscard]] std::size_t showAlert(const Alert& alert) override;
  void moveToTrash(const std::string& folder) override;
  void terminate(int status) override;

  /// What the program is to exit with; failure until the run has said otherwise.
  [[nodiscard]] int exitStatus() const;

 private:
  HeadlessRunLoop& runLoop_;
  const std::function<void(const std::string&)> announce_;
  std::optional<int> status_;
};

}  // namespace corvane
