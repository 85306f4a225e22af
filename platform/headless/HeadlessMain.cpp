#include "platform/headless/HeadlessMain.h"

#include <utility>

#include "app/AppController.h"
#include "platform/CurrentDate.h"
#include "platform/EndingSignals.h"
#include "platform/SystemVolumes.h"
#include "platform/headless/HeadlessDisplay.h"
#include "platform/headless/HeadlessRunLoop.h"
#include "platform/headless/HeadlessWorkspace.h"

namespace corvane {

int runHeadless(const Facts& facts, PropertyLists& propertyLists,
                std::function<void(const std::string&)> announce) {
  HeadlessRunLoop runLoop;
  HeadlessDisplay display(runLoop);
  SystemVolumes volumes;
  HeadlessWorkspace workspace(runLoop, std::move(announce));
  AppController controller(
      facts, {display, display, display, display, workspace, runLoop, propertyLists, volumes, currentDate});
  const EndingSignals signals(runLoop, [&] { controller.cancelBackup(); });
  controller.awakeFromNib();
  runLoop.run();
  return workspace.exitStatus();
}

}  // namespace corvane
