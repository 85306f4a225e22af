#include <fcntl.h>
#include <unistd.h>

#include "platform/DesktopOpen.h"
#include "process/FileMask.h"
#include "process/Spawn.h"

namespace corvane {

// Not waited for: the viewer outlives this program, which ends with the log button's fade.
bool openWithDesktop(const std::string& path) {
  const int null = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (null < 0) return false;
  const UsersFileMask mask;
  const Spawned viewer = spawn({"/usr/bin/xdg-open", {"xdg-open", path}, currentEnvironment()}, null);
  ::close(null);
  return viewer.pid >= 0;
}

}  // namespace corvane
