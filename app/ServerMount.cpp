#include "app/ServerMount.h"

#include "process/Log.h"

namespace corvane {
namespace {

void logFailure(const ServerVolume& volume, const MountOutcome& outcome) {
  log("Sync mount failed for server " + volume.url + ", error == " + std::to_string(outcome.error));
  if (!outcome.problem.empty()) log(outcome.problem);
}

}  // namespace

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

}  // namespace corvane
