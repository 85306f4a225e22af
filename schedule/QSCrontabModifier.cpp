#include "schedule/QSCrontabModifier.h"

#include <utility>

#include "process/Files.h"
#include "process/Log.h"
#include "process/RunTool.h"
#include "schedule/CrontabText.h"
#include "schedule/TextEncodings.h"

namespace corvane {
namespace {

constexpr std::size_t kMostWords = 500;  // bytes of what a tool said that are logged
// The user has decided, and half of it is worse; some systems ask him once more.
constexpr Patience kToItsEnd{.limit = std::chrono::minutes(10), .alsoWhenEnding = true};

std::string causeOf(const ToolResult& result) {
  if (!result.problem.empty()) return result.problem;
  const std::string cut = result.complete ? "" : " and cut short";
  return "exit status " + std::to_string(result.status) + cut + ": " + result.output.substr(0, kMostWords);
}

}  // namespace

QSCrontabModifier::QSCrontabModifier(const std::string& homeDirectory, ShowAlert showAlert,
                                     const std::string& tool)
    : stagingFolder_(homeDirectory + "/Library/Application Support/Quillon"),
      showAlert_(std::move(showAlert)),
      tool_(tool) {}

bool QSCrontabModifier::addCronJob(const std::string& job) {
  if (!utf16FromUtf8(job)) {
    log("cannot add a line to the crontab that is not UTF-8");
    return true;
  }
  removal_ = false;
  currentJob_ = job;
  getCrontab();
  return true;
}

bool QSCrontabModifier::removeCronJob() {
  removal_ = true;
  getCrontab();
  return true;
}

bool QSCrontabModifier::checkForJob(const std::string& text) {
  return listCrontab() && contains(results_, inListingsUnits(text));
}

// Having none is an error to the tool, like all others: only its words tell which one it was. They are not
// part of a listing, so that it is run once more for them. What it listed is nothing for the log.
bool QSCrontabModifier::listCrontab() {
  ToolResult listing = runTool({tool_, "-l"}, Capture::outputOnly, kToItsEnd);
  const auto text = utf16FromUtf8(listing.output);
  resultsAreBytes_ = !text;
  results_ = text ? *text : widened(listing.output);
  if (listing.complete && (listing.status == 0 || saysThereIsNone(results_))) return true;
  const std::string listed = std::exchange(listing.output, {});
  if (listed.empty() || listing.complete) {
    listing = runTool({tool_, "-l"}, Capture::outputAndErrors, kToItsEnd);
    if (listed.empty() && listing.status > 0 && saysThereIsNone(widened(listing.output))) return true;
    const auto at = listing.output.find(listed);
    listing.output = at == std::string::npos ? "" : listing.output.erase(at, listed.size());
  }
  log("cannot list the crontab: " + causeOf(listing));
  return false;
}

void QSCrontabModifier::getCrontab() {
  if (!listCrontab()) {
    showFailure();
    return;
  }
  removeJobs();
  if (removal_) {
    install(resultsAreBytes_ ? narrowed(results_) : utf8FromUtf16(results_));
  } else {
    createCrontab();
  }
}

void QSCrontabModifier::removeJobs() {
  if (saysThereIsNone(results_)) results_.clear();
  const std::u16string name = inListingsUnits(scriptName_);
  if (const auto count = jobCount(results_, name); count > 1) {
    log("The crontab names " + scriptName_ + " in " + std::to_string(count) +
        " lines, not in one: lines after them may be damaged.");
  }
  results_ = withoutJobs(results_, name);
}

void QSCrontabModifier::createCrontab() {
  results_ = withJobInFront(inListingsUnits(currentJob_), results_);
  install(resultsAreBytes_ ? narrowed(results_) : localeBytesFromUtf16(results_));
}

void QSCrontabModifier::install(const std::optional<std::string>& bytes) {
  const std::string stagingFile = stagingFolder_ + "/crontab";
  if (!bytes) {
    log("cannot write " + stagingFile + ": its encoding lacks a character of the crontab");
    return;
  }
  std::string problem;
  makeFolders(stagingFolder_);
  if (!writeFileAtomically(stagingFile, *bytes, problem)) {
    log(problem);
    return;
  }
  const ToolResult installation = runTool({tool_, stagingFile}, Capture::outputAndErrors, kToItsEnd);
  if (installation.status == 0) return;
  log("cannot install " + stagingFile + " as the crontab: " + causeOf(installation));
  showFailure();
}

void QSCrontabModifier::showFailure() {
  showAlert_("Scheduling Error", removal_ ? "Unable to remove schedule." : "Unable to save schedule.");
}

std::u16string QSCrontabModifier::inListingsUnits(const std::string& text) const {
  return resultsAreBytes_ ? widened(text) : utf16FromUtf8(text).value_or(u"");
}

}  // namespace corvane
