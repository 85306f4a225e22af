#include "platform/mount/MountFolder.h"

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>

#include "platform/mount/Helper.h"
#include "process/Files.h"

namespace corvane {

MountFolder::MountFolder(const std::string& path) {
  for (std::size_t slash = 0; slash < path.size();) {
    slash = std::min(path.find('/', slash + 1), path.size());
    const std::string folder = path.substr(0, slash);
    if (::mkdir(folder.c_str(), 0755) == 0) {
      made_.push_back(folder);
      ::chmod(folder.c_str(), 0755);  // others have volumes there, too
    } else if (errno != EEXIST) {
      error_ = errno;
      problem_ = errnoSentence("make", folder);
      return;
    }
  }
}

MountFolder::~MountFolder() {
  for (auto folder = made_.rbegin(); folder != made_.rend(); ++folder) ::rmdir(folder->c_str());
}

void detachVolume(const std::string& folder, std::chrono::milliseconds limit) {
  if (::umount2(folder.c_str(), MNT_DETACH | UMOUNT_NOFOLLOW) == 0 || errno != EPERM) return;
  // The system's own commands may do for a user what the user may not.
  MountPlan fuse{.helper = "fusermount3", .arguments = {"-u", "-z", folder}};
  MountPlan other{.helper = "umount", .arguments = {"-l", folder}};
  const Patience patience{.limit = limit, .alsoWhenEnding = true};
  if (runHelper(fuse, patience).error != 0) static_cast<void>(runHelper(other, patience));
}

}  // namespace corvane
