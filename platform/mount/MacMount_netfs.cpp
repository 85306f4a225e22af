#include <NetFS/NetFS.h>

#include "platform/mount/MacMount.h"

namespace corvane {

// This call knows no volume numbers; what it says of the folders is looked for by the caller.
MountOutcome mountUrl(const MacMountInput& input) {
  CFArrayRef folders = nullptr;
  const int error = NetFSMountURLSync(input.server, input.directory, input.user, input.password, nullptr,
                                      nullptr, &folders);
  if (folders) CFRelease(folders);
  return {.error = error};
}

}  // namespace corvane
