#include "app/AppController.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "app/DestinationCheck.h"
#include "app/DockPosition.h"
#include "app/MissingApplication.h"
#include "process/EndRequest.h"
#include "process/Files.h"
#include "process/Log.h"
#include "process/OrphanedScript.h"
#include "process/QSShellScriptGenerator.h"
#include "recipes/ClientTable.h"
#include "script/OutputTexts.h"
#include "script/ShellQuoting.h"
#include "script/Text.h"

namespace corvane {
namespace {

constexpr const char* kScriptName = ".corvane.sh";
constexpr const char* kCompletion = "com.quillon.Corvane.executionComplete";
constexpr int kAlreadyRunning = 11;     // exit status
constexpr double kFadeInterval = 0.05;  // seconds
constexpr double kFadeStep = 0.1;

// These lines accompany a step and are none themselves.
bool countsAsStep(const std::string& output) {
  return !contains(output, kResultsText) && !contains(output, kRemovalText) &&
         !contains(output, kWaitingText);
}

}  // namespace

AppController::AppController(const Facts& facts, Ports ports, const SystemPlaces& places)
    : facts_(facts),
      supportFolder_(supportFolder(facts) + "/"),
      scriptPath_(supportFolder_ + kScriptName),
      logPath_(facts.libraryFolder + "/Logs/Corvane.log"),
      ports_(ports),
      places_(places),
      monitor_(ports.activity, ports.runLoop, record_, facts.libraryFolder + "/Mail") {}

// Before the other members go: the end of the script is still reported to this controller.
AppController::~AppController() { backupTask_.reset(); }

void AppController::awakeFromNib() {
  reopenStandardError(logPath_);
  if (!becomeOnlyRun()) return;
  record_.mailTempFolder.clear();
  runBackupNow();
}

// A lock that cannot be had for another reason than another run is no reason to do without a backup.
FileLock::Outcome AppController::takeLock() {
  std::string problem;
  const auto outcome = onlyRun_.acquire(supportFolder_ + ".corvane.lock", problem);
  if (outcome == FileLock::Outcome::failed) log(problem);
  return outcome;
}

// False when another run is at work; the program then ends.
bool AppController::becomeOnlyRun() {
  const auto lock = takeLock();
  if (lock == FileLock::Outcome::heldByAnother) {
    log("A backup is already running.");
    end(kAlreadyRunning);
    return false;
  }
  isSureToBeAlone_ = lock == FileLock::Outcome::acquired;
  if (isSureToBeAlone_ && fileExists(scriptPath_))
    endOrphanedScripts(scriptPath_);  // only a killed run leaves it
  return true;
}

bool AppController::loadPreferences() {
  const auto preferences = readPreferences(ports_.propertyLists, facts_.libraryFolder);
  if (!preferences) {
    log("Unable to read preferences file");
    return false;
  }
  log("Reading Preferences and Configuration");
  if (!preferences->isConfigured()) {
    log(kNotConfigured);
    return false;
  }
  record_.filenameTemplate = preferences->filenameTemplate;
  record_.dateFormat = preferences->dateFormat;
  record_.quitEntourage = preferences->quitEntourage;
  return true;
}

void AppController::end(int status) {
  isEnding_ = true;
  ports_.workspace.terminate(status);
}

void AppController::runBackupNow() {
  if (!loadPreferences()) {
    log("Unable to start backup due above issue.");
    end(EXIT_FAILURE);
    return;
  }
  openWindow();
  const auto configuration = readConfiguration(ports_.propertyLists, supportFolder(facts_));
  if (isApplicationMissing(configuration.appLocation, places_.companion) && !goesOnWithoutApplication()) {
    return;
  }
  const auto showStatus = [this](const std::string& status) { updateDisplayWithStatus(status); };
  if (!isDestinationAvailable(configuration, record_, ports_.volumes, ports_.workspace, showStatus) ||
      isEndRequested()) {  // which the run loop will serve as a cancel
    failBeforeStart();
    return;
  }
  log("Configuring Backup...");
  const ScriptOutcome script = generateShellScript(configuration);
  if (script == ScriptOutcome::hasNoPlace) {
    failBeforeStart();
    return;
  }
  log("Backup Starting...");
  ports_.display.setHeadline("Backup in Progress...");
  if (script == ScriptOutcome::isReady) {
    executeShellScriptAtPath(scriptPath_);
  } else {
    processFinished();  // one that a killed run left must not be taken for this run's
  }
}

// The window stays until its user has seen it.
void AppController::failBeforeStart() {
  isAtWork_ = false;
  record_.tempFolderStore.reset();  // whatever stands there is not this run's
  ports_.display.setHeadline("Backup Failed");
  awaitDismissal();
}

void AppController::openWindow() {
  const auto dock = getDockPosition(ports_.propertyLists, facts_.libraryFolder);
  monitor_.forgetMailCheck();
  ports_.display.setHeadline("Readying Corvane...");
  ports_.window.open(windowPoint(dock));
}

// The log holds every alert, for runs that nobody watches.
std::size_t AppController::ask(const Alert& alert) {
  log(alert.message);
  log(alert.information);
  const std::size_t answer = ports_.workspace.showAlert(alert);
  log(answer < alert.buttons.size() ? "Answer: " + alert.buttons[answer] : "No answer");
  return answer;
}

// No later run waits for somebody to answer.
bool AppController::goesOnWithoutApplication() {
  onlyRun_.release();
  if (ask(missingApplicationAlert()) != 0) return becomeOnlyRun();
  completeUninstall();
  return false;
}

// The run ends here without an announcement, as if it had never been scheduled.
void AppController::completeUninstall() {
  const auto show = [this](const std::string& message, const std::string& information) {
    static_cast<void>(ask({AlertStyle::informational, message, information, {"OK"}}));
  };
  QSCrontabModifier crontab(facts_.homeDirectory, show, places_.crontabTool);
  crontab.setScriptName("BackupEngine.app");
  crontab.removeCronJob();
  ports_.workspace.moveToTrash(supportFolder(facts_));
  end(EXIT_SUCCESS);
}

AppController::ScriptOutcome AppController::generateShellScript(const BackupConfiguration& configuration) {
  ScriptAssembly(record_, facts_, clientTable(), *this).assemble(configuration.script);
  ports_.steps.setStepMaximum(record_.progressMaximum);
  workNames_ = workNames(record_, configuration.script.destination, scriptPath_);
  if (!clearLeftovers(workNames_, isSureToBeAlone_)) return ScriptOutcome::hasNoPlace;
  isAtWork_ = true;
  writeManifests();
  const bool isWritten = QSShellScriptGenerator::generateShellScriptFromCommand(record_.shellScript,
                                                                                kScriptName, supportFolder_);
  return isWritten ? ScriptOutcome::isReady : ScriptOutcome::isMissing;
}

// One that cannot be written is missing from its archive; an older one of ours must not stand in for it. In a
// client's own folder nothing is removed.
void AppController::writeManifests() {
  const CalendarDate today = ports_.currentDate();  // a question may have waited for days
  for (const auto& manifest : record_.manifests) {
    std::string problem;
    if (ports_.propertyLists.writeXml(manifest.path, manifestDictionary(manifest, today), problem)) continue;
    log(problem);
    if (manifest.path.starts_with(supportFolder_)) removeFile(manifest.path);
  }
}

void AppController::executeShellScriptAtPath(const std::string& path) {
  backupTask_.reset();
  TaskController& controller = *this;
  backupTask_ =
      std::make_unique<TaskWrapper>(ports_.runLoop, controller, std::vector{path}, facts_.toolsFolder);
  backupTask_->startProcess();
}

void AppController::updateDisplayWithStatus(const std::string& status) {
  ports_.display.setStatus(status);
  log(status);
}

// What one read returned may go on after the line that asks for Mail, up to the verdict: that is looked at by
// itself, so that a slow reader does not take a good backup for a failed one.
void AppController::appendOutput(const std::string& raw) {
  const std::string output = controlFilter_.filter(raw);
  std::size_t start = 0;
  for (auto marker = output.find(kLaunchMailText); marker != std::string::npos;
       marker = output.find(kLaunchMailText, start)) {
    const auto end = std::min(output.find('\n', marker), output.size() - 1) + 1;
    appendChunk(output.substr(start, end - start));
    start = end;
  }
  if (start < output.size()) appendChunk(output.substr(start));
}

// What the system's loader says is never shown, but counts as a step.
void AppController::appendChunk(const std::string& output) {
  if (contains(output, kLaunchMailText)) {
    ports_.workspace.launchApplication("Mail.app");
  } else if (!contains(output, "dyld")) {
    updateDisplayWithStatus(output);
  }
  if (contains(output, kServerCopyText)) logIntruders(workNames_);
  if (countsAsStep(output)) ports_.steps.advanceSteps(1.0);
}

void AppController::processFinished() {
  succeeded_ = contains(ports_.display.status(), kSuccessText);
  isAtWork_ = !succeeded_;
  ports_.workspace.postNotification(kCompletion);
  removeWrittenFiles();
  ports_.activity.stopActivity();
  if (succeeded_) {
    startFadeTimer();
  } else {
    showFailure();
  }
}

void AppController::removeWrittenFiles() {
  removeFile(scriptPath_);
  if (!record_.contentsLocation.empty()) removeFile(record_.contentsLocation);
}

void AppController::showFailure() {
  ports_.window.showFailure();
  ports_.display.setHeadline("Backup had errors");
  deleteStagingFolder("Cleaning up after failed Backup");
  isAtWork_ = false;
  awaitDismissal();
}

// A window that waits for its user, perhaps for days, does not keep the next backup from running.
void AppController::awaitDismissal() {
  onlyRun_.release();
  isOver_ = true;
  ports_.window.awaitDismissal([this] { startFadeTimer(); });
}

void AppController::deleteStagingFolder(const char* announcement) {
  if (!record_.tempFolderStore) return;
  if (isOver_ && takeLock() == FileLock::Outcome::heldByAnother) return;  // it may be that run's by now
  log(announcement);
  const std::string folder = stripEscapes(*record_.tempFolderStore);
  const Entry entry = entryAt(folder);
  if (entry.kind == EntryKind::none || entry.isOurs || hasOwnerOfNewFiles(folder)) {
    removeTree(folder);
  } else {
    log("cannot remove " + folder + ": it belongs to another user");
  }
  if (isOver_) onlyRun_.release();
}

void AppController::cancelBackup() {
  if (isEnding_) return;
  log("User: Cancelling Backup");
  updateDisplayWithStatus("Cancelling Backup");
  if (backupTask_) backupTask_->stopProcess();
  deleteStagingFolder("Cleaning up after Cancelled Backup");
  isAtWork_ = false;
  startFadeTimer();
  ports_.workspace.postNotification(kCompletion);
}

void AppController::abandon() {
  if (backupTask_) backupTask_->abandonProcess();
  if (!std::exchange(isAtWork_, false)) return;
  log("The display is lost: the backup is cancelled");
  removeWrittenFiles();
  deleteStagingFolder("Cleaning up after Cancelled Backup");
}

void AppController::displayLogWindow() {
  ports_.workspace.openFile(logPath_, "Console.app");
  startFadeTimer();
}

void AppController::startFadeTimer() {
  timer_ = ports_.runLoop.repeat(kFadeInterval, [this] { fade(); });
}

void AppController::fade() {
  const double opacity = ports_.window.opacity();
  if (opacity > 0) {
    ports_.window.setOpacity(opacity - kFadeStep);
    return;
  }
  timer_.reset();
  ports_.window.close();
  record_.contentsLocation.clear();
  end(succeeded_ ? EXIT_SUCCESS : EXIT_FAILURE);
}

void AppController::measureMailFolder() {
  updateDisplayWithStatus("Determining Backup Size...");
  monitor_.getMailFolderSize();
}

bool AppController::folderHasEntries(const std::string& path) { return corvane::folderHasEntries(path); }

std::optional<std::string> AppController::findOriginalFromAlias(const std::string& path) {
  return ports_.volumes.findOriginalFromAlias(path);
}

}  // namespace corvane
