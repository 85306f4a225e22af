#include "platform/headless/HeadlessWorkspace.h"

#include <cstdlib>

#include "process/Log.h"

namespace corvane {

void HeadlessWorkspace::launchApplication(const std::string& name) {
  log("Not launching " + name + ": there is no display");
}

void HeadlessWorkspace::openFile(const std::string& path, const std::string& /*application*/) {
  log("Not opening " + path + ": there is no display");
}

// The second answer is the one that changes nothing.
std::size_t HeadlessWorkspace::showAlert(const Alert& alert) {
  log("Nobody can answer: there is no display");
  return alert.buttons.size() > 1 ? 1 : 0;
}

void HeadlessWorkspace::moveToTrash(const std::string& folder) {
  log("Not moving " + folder + " to the Trash: there is no display");
}

void HeadlessWorkspace::terminate(int status) {
  if (!status_) status_ = status;
  runLoop_.stop();
}

int HeadlessWorkspace::exitStatus() const { return status_.value_or(EXIT_FAILURE); }

}  // namespace corvane
