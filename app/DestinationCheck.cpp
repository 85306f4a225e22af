#include "app/DestinationCheck.h"

#include "app/MountRequest.h"
#include "process/Files.h"
#include "process/Log.h"

namespace corvane {
namespace {

using ShowStatus = std::function<void(const std::string&)>;

void logFailure(const ServerVolume& volume, const MountOutcome& outcome) {
  log("Sync mount failed for server " + volume.url + ", error == " + std::to_string(outcome.error));
  if (!outcome.problem.empty()) log(outcome.problem);
}

// Whether the volume is there afterwards is for the caller to look: the system may have given it another
// name.
void mountServer(const MountRequest& request, Volumes& volumes, Workspace& workspace) {
  const ServerVolume volume = serverVolumeFrom(request);
  const MountOutcome outcome = volumes.mountServer(volume);
  if (outcome.error != 0) {
    logFailure(volume, outcome);
    return;
  }
  const std::string place =
      volume.mountDirectory.empty() ? volume.url : volume.url + "/" + volume.mountDirectory;
  log("Sync-mounted server " + place + ", user == " + volume.user.value_or("(null)") +
      ", refNum == " + std::to_string(outcome.reference));
  workspace.noteFileSystemChanged(place);
}

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
