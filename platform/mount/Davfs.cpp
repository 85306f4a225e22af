#include "platform/mount/MountPlan.h"

namespace corvane {
namespace {

// The buffer of the usual size is too small for recent systems to list a folder through; files are sent
// when they are closed, not some time later.
constexpr const char* kSettings =
    "buf_size 64\nuse_locks 0\ndelay_upload 0\nconnect_timeout 10\nread_timeout 20\n";

// A server that cannot be reached does not disturb the helper: it mounts what it remembers of it, and says
// so.
constexpr const char* kUnreachable = "mounting anyway";

MountPlan planWith(const char* scheme, const MountTask& task) {
  MountPlan plan{.helper = "mount.davfs", .settings = kSettings, .failure = kUnreachable};
  const std::string url = std::string(scheme) + "://" + task.address.withPort() + "/" + task.path;
  plan.arguments = {"-o", kSettingsFile, url, task.folder};
  plan.input = task.password + "\n";
  if (task.user.empty()) {
    plan.input = "\n" + plan.input;  // it asks for both, and takes an empty line for none
  } else {
    // Who is named here is not looked for in a file of secrets.
    plan.arguments.insert(plan.arguments.begin(), {"-o", "username=" + task.user});
  }
  return plan;
}

}  // namespace

MountPlan planDavfs(const MountTask& task) { return planWith("http", task); }

MountPlan planSecureDavfs(const MountTask& task) { return planWith("https", task); }

}  // namespace corvane
