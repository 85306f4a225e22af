#include "platform/mount/MountPlan.h"

namespace corvane {

MountPlan planCifs(const MountTask& task) {
  MountPlan plan{.helper = "mount.cifs"};
  std::string options = task.user.empty() ? "guest" : "user=" + task.user;
  options += ",nosuid,nodev,noexec";
  if (!task.address.port.empty()) options += ",port=" + task.address.port;
  plan.arguments = {"//" + task.address.host + "/" + task.path, task.folder, "-o", options};
  plan.variables = {{"PASSWD_FD", "0"}};              // the descriptor to read it from
  plan.withheld = {"PASSWD", "PASSWD_FILE", "USER"};  // would be taken for ours
  plan.input = task.password + "\n";
  return plan;
}

}  // namespace corvane
