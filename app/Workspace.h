// Port: what a run asks of the user's desktop. No operation reports failure to the run: each logs its own.
// Without a desktop nothing is launched, opened or moved, which is logged as well.
// Owner: the composition root. Thread: main.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace corvane {

enum class AlertStyle { informational = 1, critical = 2 };

/// A question or a message, in UTF-8. The first of the buttons is the default one.
struct Alert {
  AlertStyle style = AlertStyle::informational;
  std::string message;      ///< one line
  std::string information;  ///< prose in smaller type, broken into lines as needed
  std::vector<std::string> buttons;
};

class Workspace {
 public:
  virtual ~Workspace() = default;
  virtual void launchApplication(const std::string& name) = 0;
  virtual void openFile(const std::string& path, const std::string& application) = 0;
  /// Tells the desktop that what lies at `path` looks different now.
  virtual void noteFileSystemChanged(const std::string& path) = 0;
  /// Posts a notification to other processes at once, with no object and no user information.
  virtual void postNotification(const std::string& name) = 0;
  /// Shows `alert` until a button is pressed and answers its index; one beyond the last when the alert went
  /// away without. Where nobody can press any, answers the second, or the only one. The caller logs it.
  [[nodiscard]] virtual std::size_t showAlert(const Alert& alert) = 0;
  /// Moves the folder at an absolute path to where the user can get it back from.
  virtual void moveToTrash(const std::string& folder) = 0;
  /// Ends the program with `status` once the current callback has returned. The first call decides.
  virtual void terminate(int status) = 0;
};

}  // namespace corvane
