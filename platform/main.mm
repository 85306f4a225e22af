#include <csignal>

#include "platform/Display.h"
#include "platform/SystemFacts.h"
#include "platform/SystemPropertyLists.h"
#import "platform/cocoa/Application.h"
#import "platform/cocoa/CompletionNotification.h"
#include "platform/headless/HeadlessMain.h"

int main(int argc, const char** argv) {
  // Who starts this may have chosen to ignore it; the exit statuses of our tools would then be lost.
  std::signal(SIGCHLD, SIG_DFL);
  if (corvane::isDisplayAvailable()) return corvane::runApplication(argc, argv);
  corvane::SystemPropertyLists propertyLists;
  return corvane::runHeadless(corvane::readFacts(), propertyLists, corvane::postDistributedNotification);
}
