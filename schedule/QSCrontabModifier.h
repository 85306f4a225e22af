// Edits the user's crontab: takes out the line that names the program's script, and may put a new one in
// front. When there is one such line, a removal leaves all others as they are, down to bytes in an encoding
// that nobody knows, and an addition takes away the empty ones only. A crontab that could not be read for
// certain, and to its end, is left alone.
// Owner: whoever makes one, for one operation. Thread: main; blocks until the `crontab` tool is done, each
// time for ten minutes at most.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace corvane {

inline constexpr const char* kCrontabTool = "/usr/bin/crontab";

class QSCrontabModifier {
 public:
  /// Shows a message and, in smaller type, what failed, until the user has seen it.
  using ShowAlert = std::function<void(const std::string& message, const std::string& information)>;

  /// The new text goes through a file in the Library of `homeDirectory`, which only its owner can read and
  /// which stays. `showAlert` is called when the crontab could not be read or installed. `tool` is the
  /// command that lists and installs it.
  QSCrontabModifier(const std::string& homeDirectory, ShowAlert showAlert,
                    const std::string& tool = kCrontabTool);

  /// What marks the program's own lines, in UTF-8. Set before anything is added or removed.
  void setScriptName(const std::string& scriptName) { scriptName_ = scriptName; }

  /// Puts `job`, a line in UTF-8 with its line break, before the user's other lines, in place of the one that
  /// names the script. The file is in the encoding of the user's locale, or in that of a crontab that is no
  /// UTF-8. Always true: every failure is logged. A crontab that cannot be read or installed is shown too; a
  /// text that cannot be encoded or written is not, and installs nothing.
  bool addCronJob(const std::string& job);

  /// Takes out the line that names the script; with several, lines after them may be damaged, and the log
  /// says so. Always true, as above.
  bool removeCronJob();

  /// True when the crontab holds `text` anywhere, in comments too; false when it cannot be read.
  [[nodiscard]] bool checkForJob(const std::string& text);

 private:
  [[nodiscard]] bool listCrontab();
  void getCrontab();
  void createCrontab();
  void removeJobs();
  void install(const std::optional<std::string>& bytes);
  void showFailure();
  [[nodiscard]] std::u16string inListingsUnits(const std::string& text) const;

  const std::string stagingFolder_;
  const ShowAlert showAlert_;
  const std::string tool_;
  bool removal_ = false;
  std::u16string results_;
  bool resultsAreBytes_ = false;  // the listing is no UTF-8: a unit of `results_` is one byte of it
  std::string currentJob_;
  std::string scriptName_;
};

}  // namespace corvane
