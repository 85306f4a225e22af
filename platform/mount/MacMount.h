// The system's synchronous mount of a server volume. Two sources, of which the build takes the one whose call
// the SDK has: newer ones dropped the older call. Thread: main, which waits for the server.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include "app/Volumes.h"

namespace corvane {

/// Borrowed for the call; null where there is nothing to say.
struct MacMountInput {
  CFURLRef server;
  CFURLRef directory;
  CFStringRef user;
  CFStringRef password;
};

[[nodiscard]] MountOutcome mountUrl(const MacMountInput& input);

}  // namespace corvane
