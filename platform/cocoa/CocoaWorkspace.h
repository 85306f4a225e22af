// The user's desktop, for runs with a window.
// Owner: the interface file's controller object. Thread: main.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

#include "app/Workspace.h"

namespace corvane {

class CocoaWorkspace : public Workspace {
 public:
  void launchApplication(const std::string& name) override;
  void openFile(const std::string& path, const std::string& application) override;
  void noteFileSystemChanged(const std::string& path) override;
  void postNotification(const std::string& name) override;
  [[nodiscard]] std::size_t showAlert(const Alert& alert) override;
  void moveToTrash(const std::string& folder) override;
  void terminate(int status) override;

  /// What the program is to exit with; failure when the system ends it before the run has.
  [[nodiscard]] int exitStatus() const { return status_.value_or(EXIT_FAILURE); }

 private:
  std::optional<int> status_;
};

}  // namespace corvane
