#include "platform/Display.h"
#include "platform/ProcessStart.h"
#include "platform/SystemFacts.h"
#include "platform/SystemPropertyLists.h"
#import "platform/cocoa/Application.h"
#import "platform/cocoa/CompletionNotification.h"
#include "platform/headless/HeadlessMain.h"

int main(int argc, const char** argv) {
  corvane::prepareProcess();
  if (corvane::isDisplayAvailable()) return corvane::runApplication(argc, argv);
  corvane::SystemPropertyLists propertyLists;
  return corvane::runHeadless(corvane::readFacts(), propertyLists, corvane::postDistributedNotification);
}
