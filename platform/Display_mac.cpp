#include "platform/Display.h"

#include <ApplicationServices/ApplicationServices.h>

namespace corvane {

// A crontab job of a user who is not logged in has no session with the window server.
bool isDisplayAvailable() {
  CFDictionaryRef session = CGSessionCopyCurrentDictionary();
  if (session == nullptr) return false;
  CFRelease(session);
  return true;
}

bool isWindowManagerRunning() { return true; }

}  // namespace corvane
