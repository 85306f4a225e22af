#include "app/DestinationCheck.h"

#include "app/ServerMount.h"
#include "process/Files.h"
#include "process/Log.h"

namespace corvane {
namespace {

using ShowStatus = std::function<void(const std::string&)>;

bool isServerVolumeAvailable(const Automount& automount, Volumes& volumes, Workspace& workspace,
                             const ShowStatus& showStatus) {
  const auto isMounted = [&] { return automount.path && volumes.isMounted(*automount.path); };
  if (isMounted()) {
    log("Server based destination is available");
    return true;
  }
  showStatus("Mounting Server Volume...");
  mountServer(mountRequestFor(automount), volumes, workspace);
  if (!isMounted()) {
    log("Server based destination is not available");
    return false;
  }
  log("Server based destination is now available");
  showStatus("Backup destination mounted");
  return true;
}

}  // namespace

bool isDestinationAvailable(const BackupConfiguration& configuration, RunRecord& record, Volumes& volumes,
                            Workspace& workspace, const ShowStatus& showStatus) {
  showStatus("Checking backup destination...");
  record.useAutomount = configuration.automount.has_value();
  if (record.useAutomount) {
    return isServerVolumeAvailable(*configuration.automount, volumes, workspace, showStatus);
  }
  if (!isFolder(configuration.script.destination)) return false;
  log("Destination is available");
  return true;
}

}  // namespace corvane
