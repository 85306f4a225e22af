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

void HeadlessWorkspace::terminate(int status) {
  if (!status_) status_ = status;
  runLoop_.stop();
}

int HeadlessWorkspace::exitStatus() const { return status_.value_or(EXIT_FAILURE); }

}  // namespace corvane
