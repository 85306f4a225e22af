#include "platform/mount/MountPlan.h"

namespace corvane {

// The server goes by the user's number, so there is nobody to name. A soft mount answers with an error when
// the server has been silent for half a minute; a hard one would wait for it for ever.
MountPlan planNfs(const MountTask& task) {
  std::string options = "soft,timeo=100,retrans=2,retry=0,nosuid,nodev,noexec";
  if (!task.address.port.empty()) options += ",port=" + task.address.port;
  return {.helper = "mount.nfs",
          .arguments = {task.address.bracketed() + ":/" + task.path, task.folder, "-o", options}};
}

}  // namespace corvane
