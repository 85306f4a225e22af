// Edits the user's crontab: takes out the lines that name the program's script, and may put a new one in
// front. Everything else stays as it is, down to bytes in an encoding that nobody knows.
// Owner: whoever makes one, for one operation. Thread: main; blocks until the `crontab` tool is done.
#pragma once

#include <functional>
#include <string>

namespace corvane {

class QSCrontabModifier {
 public:
  /// Shows a message and, in smaller type, what failed, until the user has seen it.
  using ShowAlert = std::function<void(const std::string& message, const std::string& information)>;

  /// The new text goes through a file in the Library of `homeDirectory`, which only its owner can read and
  /// which stays. `showAlert` is called when the crontab could not be read or installed.
  QSCrontabModifier(const std::string& homeDirectory, ShowAlert showAlert);

  /// What marks the program's own lines, in UTF-8. Set before anything is added or removed.
  void setScriptName(const std::string& scriptName) { scriptName_ = scriptName; }

  /// Puts `job`, a line with its line break, before the user's other lines, in place of those that name the
  /// script. Always true: what fails is shown, but for a file that cannot be written, which is only logged.
  bool addCronJob(const std::string& job);

  /// Takes out the lines that name the script. Always true, as above.
  bool removeCronJob();

  /// True when the crontab holds `text` anywhere, in comments too.
  [[nodiscard]] bool checkForJob(const std::string& text);

 private:
  [[nodiscard]] bool listCrontab();
  void getCrontab();
  void createCrontab();
  void install(const std::string& bytes);
  void showFailure();
  [[nodiscard]] std::u16string inListingsUnits(const std::string& text) const;

  const std::string stagingFolder_;
  const ShowAlert showAlert_;
  bool removal_ = false;
  std::u16string results_;
  bool resultsAreBytes_ = false;  // the listing is no UTF-8: a unit of `results_` is one byte of it
  std::string currentJob_;
  std::string scriptName_;
};

}  // namespace corvane
