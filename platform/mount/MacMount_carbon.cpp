#include <CoreServices/CoreServices.h>

#include "platform/mount/MacMount.h"

// Newer systems call it deprecated, but have it as the older ones do.
#pragma clang diagnostic ignored "-Wdeprecated-declarations"

namespace corvane {

MountOutcome mountUrl(const MacMountInput& input) {
  FSVolumeRefNum reference = 0;
  const OptionBits noFlags = 0;
  const OSStatus error =
      FSMountServerVolumeSync(input.server, input.directory, input.user, input.password, &reference, noFlags);
  return {.error = error, .reference = reference};
}

}  // namespace corvane
