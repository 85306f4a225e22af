#include "platform/Display.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>

#include <memory>

namespace corvane {
namespace {

using DisplayConnection = std::unique_ptr<::Display, int (*)(::Display*)>;

DisplayConnection connect() { return {XOpenDisplay(nullptr), XCloseDisplay}; }

}  // namespace

bool isDisplayAvailable() { return connect() != nullptr; }

bool isWindowManagerRunning() {
  const auto display = connect();
  if (!display) return false;
  const Atom check = XInternAtom(display.get(), "_NET_SUPPORTING_WM_CHECK", True);
  if (check == None) return false;
  Atom type = None;
  int format = 0;
  unsigned long count = 0;
  unsigned long left = 0;
  unsigned char* value = nullptr;
  XGetWindowProperty(display.get(), DefaultRootWindow(display.get()), check, 0, 1, False, XA_WINDOW, &type,
                     &format, &count, &left, &value);
  if (value) XFree(value);
  return type == XA_WINDOW;
}

}  // namespace corvane
