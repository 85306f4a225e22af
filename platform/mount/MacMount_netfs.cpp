#include <NetFS/NetFS.h>

#include "platform/mount/MacMount.h"

namespace corvane {

// This call knows no volume numbers; what it says of the folders is looked for by the caller.
MountOutcome mountUrl(const MacMountInput& input) {
  CFArrayRef folders = nullptr;
  CFMutableDictionaryRef options = CFDictionaryCreateMutable(
      kCFAllocatorDefault, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks);
  if (options) CFDictionarySetValue(options, kNAUIOptionKey, kNAUIOptionNoUI);  // a run has nobody to ask
  const int error = NetFSMountURLSync(input.server, input.directory, input.user, input.password, options,
                                      nullptr, &folders);
  if (options) CFRelease(options);
  if (folders) CFRelease(folders);
  return {.error = error};
}

}  // namespace corvane
