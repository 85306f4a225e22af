#include "schedule/QSCrontabModifier.h"

#include <optional>
#include <utility>

#include "process/Files.h"
#include "process/Log.h"
#include "process/RunTool.h"
#include "schedule/CrontabText.h"
#include "schedule/TextEncodings.h"

namespace corvane {
namespace {

constexpr const char* kCrontab = "/usr/bin/crontab";

// A tool that did not end by itself may have printed a part only.
bool endedByItself(const ToolResult& result) { return result.status >= 0 && result.status < 128; }

std::string causeOf(const ToolResult& result) {
  if (!result.problem.empty()) return result.problem;
  return "exit status " + std::to_string(result.status) + " " + result.output;
}

}  // namespace

QSCrontabModifier::QSCrontabModifier(const std::string& homeDirectory, ShowAlert showAlert)
    : stagingFolder_(homeDirectory + "/Library/Application Support/Quillon"),
      showAlert_(std::move(showAlert)) {}

bool QSCrontabModifier::addCronJob(const std::string& job) {
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

// Having none is an error to the tool, so that its exit status says nothing.
bool QSCrontabModifier::listCrontab() {
  const ToolResult listing = runTool({kCrontab, "-l"}, Capture::outputOnly);
  const auto text = utf16FromUtf8(listing.output);
  resultsAreBytes_ = !text;
  results_ = text ? *text : widened(listing.output);
  if (!listing.problem.empty()) log(listing.problem);
  return endedByItself(listing);
}

void QSCrontabModifier::getCrontab() {
  if (!listCrontab()) {
    showFailure();
    return;
  }
  results_ = withoutJobs(results_, inListingsUnits(scriptName_));
  if (!removal_) {
    createCrontab();
    return;
  }
  const auto bytes = resultsAreBytes_ ? narrowed(results_) : utf8FromUtf16(results_);
  if (bytes) install(*bytes);
}

void QSCrontabModifier::createCrontab() {
  results_ = withJobInFront(inListingsUnits(currentJob_), results_);
  const auto bytes = resultsAreBytes_ ? narrowed(results_) : localeBytesFromUtf16(results_);
  if (bytes) install(*bytes);
}

void QSCrontabModifier::install(const std::string& bytes) {
  const std::string stagingFile = stagingFolder_ + "/crontab";
  std::string problem;
  makeFolders(stagingFolder_);
  if (!writeFileAtomically(stagingFile, bytes, problem)) {
    log(problem);
    return;
  }
  const ToolResult installation = runTool({kCrontab, stagingFile});
  if (installation.status == 0) return;
  log("cannot install " + stagingFile + " as the crontab: " + causeOf(installation));
  showFailure();
}

void QSCrontabModifier::showFailure() {
  showAlert_("Scheduling Error", removal_ ? "Unable to remove schedule." : "Unable to save schedule.");
}

std::u16string QSCrontabModifier::inListingsUnits(const std::string& text) const {
  const auto units = resultsAreBytes_ ? std::nullopt : utf16FromUtf8(text);
  return units ? *units : widened(text);
}

}  // namespace corvane
