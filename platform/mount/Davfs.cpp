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
  // It asks for both, and takes an empty line for none.
  plan.input = task.user + "\n" + task.password + "\n";
  const std::string url = std::string(scheme) + "://" + task.address.withPort() + "/" + task.path;
  plan.arguments = {"-o", kSettingsFile, url, task.folder};
  return plan;
}

}  // namespace

MountPlan planDavfs(const MountTask& task) { return planWith("http", task); }

MountPlan planSecureDavfs(const MountTask& task) { return planWith("https", task); }

}  // namespace corvane
