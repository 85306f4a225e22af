#include "app/DestinationCheck.h"

#include "process/Files.h"
#include "process/Log.h"

namespace corvane {
namespace {

bool isVolumeMounted(const Automount& automount) {
  return automount.path && isFolder("/Volumes/" + *automount.path);
}

}  // namespace

bool isDestinationAvailable(const BackupConfiguration& configuration, RunRecord& record,
                            const std::function<void(const std::string&)>& showStatus) {
  showStatus("Checking backup destination...");
  record.useAutomount = configuration.automount.has_value();
  if (record.useAutomount) {
    const bool mounted = isVolumeMounted(*configuration.automount);
    log(mounted ? "Server based destination is available" : "Server based destination is not available");
    return mounted;
  }
  if (!isFolder(configuration.script.destination)) return false;
  log("Destination is available");
  return true;
}

}  // namespace corvane
