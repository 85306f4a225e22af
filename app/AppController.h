// Conducts one backup run from start to exit: settings, destination, script, its output, verdict, farewell.
//
// Owner: the interface file's object, or the headless main. It borrows everything it is given, owns the run
// record and the running script, and must be destroyed before what it borrowed. Thread: main.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/BackupConfiguration.h"
#include "app/Leftovers.h"
#include "app/ManifestFile.h"
#include "app/ProgressMonitor.h"
#include "app/ProgressWindow.h"
#include "app/PropertyLists.h"
#include "app/Volumes.h"
#include "app/Workspace.h"
#include "process/ControlFilter.h"
#include "process/FileLock.h"
#include "process/RunLoop.h"
#include "process/TaskWrapper.h"
#include "schedule/QSCrontabModifier.h"
#include "script/Client.h"
#include "script/Facts.h"
#include "script/RunRecord.h"

namespace corvane {

/// What a run asks the machine through.
struct Ports {
  StatusDisplay& display;
  ActivityBar& activity;
  StepBar& steps;
  ProgressWindow& window;
  Workspace& workspace;
  RunLoop& runLoop;
  PropertyLists& propertyLists;
  Volumes& volumes;
  CalendarDate (&currentDate)();  // in the user's time zone
};

/// What a run expects at fixed places of the system.
struct SystemPlaces {
  std::string companion = "/Applications/Corvane.app";
  std::string crontabTool = kCrontabTool;
};

class AppController : private TaskController, private ScriptHost {
 public:
  AppController(const Facts& facts, Ports ports, const SystemPlaces& places = {});
  ~AppController() override;
  AppController(const AppController&) = delete;
  AppController& operator=(const AppController&) = delete;

  /// Entry point, called once: sends standard error to the log file and starts the run, unless one is going
  /// on already; then the program ends with status 11. When it returns the run waits for output, for its
  /// user, or for the program to end.
  void awakeFromNib();

  /// The cancel button: ends the script with all that it started, cleans up, and fades out. Without effect
  /// when the program is ending already.
  void cancelBackup();

  /// For a program that is ending itself, from wherever it stands: ends the script with all that it started
  /// and cleans up, without display and run loop. Nothing is announced. Without effect on a run that has not
  /// begun to work, or is done.
  void abandon();

  /// The log button: opens the log and fades out.
  void displayLogWindow();

 private:
  [[nodiscard]] FileLock::Outcome takeLock();
  [[nodiscard]] bool becomeOnlyRun();
  void end(int status);
  [[nodiscard]] bool loadPreferences();
  void runBackupNow();
  void openWindow();
  [[nodiscard]] std::size_t ask(const Alert& alert);
  void completeUninstall();
  [[nodiscard]] bool goesOnWithoutApplication();
  enum class ScriptOutcome { isReady, isMissing, hasNoPlace };
  [[nodiscard]] ScriptOutcome generateShellScript(const BackupConfiguration& configuration);
  void failBeforeStart();
  void awaitDismissal();
  void writeManifests();
  void removeWrittenFiles();
  void executeShellScriptAtPath(const std::string& path);
  void appendChunk(const std::string& output);
  void updateDisplayWithStatus(const std::string& status);
  void showFailure();
  void deleteStagingFolder(const char* announcement);
  void startFadeTimer();
  void fade();

  // TaskController
  void processStarted() override {}
  void appendOutput(const std::string& output) override;
  void processFinished() override;

  // ScriptHost
  void measureMailFolder() override;
  [[nodiscard]] bool folderHasEntries(const std::string& path) override;
  [[nodiscard]] std::optional<std::string> findOriginalFromAlias(const std::string& path) override;

  const Facts facts_;
  const std::string supportFolder_;  // ends with a slash
  const std::string scriptPath_;
  const std::string logPath_;
  Ports ports_;
  const SystemPlaces places_;
  RunRecord record_;
  std::vector<WorkName> workNames_;  // free when the script was started
  ProgressMonitor monitor_;
  FileLock onlyRun_;
  bool isSureToBeAlone_ = false;  // the lock was had: what lies about is no living run's
  bool isAtWork_ = false;         // this run's files may lie about, which nobody else tidies up
  bool isEnding_ = false;         // the program has been asked to end
  bool isOver_ = false;           // the lock was given back, and the window waits for its user
  ControlFilter controlFilter_;
  bool succeeded_ = false;
  std::unique_ptr<TaskWrapper> backupTask_;
  std::unique_ptr<RunLoop::Source> timer_;  // of the fade
};

}  // namespace corvane
