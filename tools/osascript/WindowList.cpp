#include "tools/osascript/WindowList.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <memory>
#include <span>

#include "tools/osascript/Names.h"

namespace corvane::osascript {
namespace {

// A window can go away between being listed and being asked; that is no reason to end.
int ignoreError(Display*, XErrorEvent*) { return 0; }

template <typename Value>
using XMemory = std::unique_ptr<Value, int (*)(void*)>;

class Windows {
 public:
  Windows(std::string_view application, const std::vector<pid_t>& processes)
      : application_(application), processes_(processes), display_(XOpenDisplay(nullptr), XCloseDisplay) {
    if (!display_) return;
    XSetErrorHandler(ignoreError);
    collectBelow(DefaultRootWindow(display_.get()), 0);
  }

  bool askToClose();
  bool raise();

 private:
  Atom atom(const char* name) { return XInternAtom(display_.get(), name, False); }
  void collectBelow(Window parent, int depth);
  bool isOurs(Window window);
  bool isInUse(Window window);
  bool understandsClose(Window window);
  long number(Window window, Atom property, long otherwise);
  void send(Window window, Window receiver, long mask, XClientMessageEvent message);

  std::string_view application_;
  const std::vector<pid_t>& processes_;
  std::unique_ptr<Display, int (*)(Display*)> display_;
  std::vector<Window> windows_;
};

// An application's window lies directly on the screen, or within the frame of a window manager.
void Windows::collectBelow(Window parent, int depth) {
  constexpr int kDeepestFrame = 3;
  Window root = None;
  Window above = None;
  Window* list = nullptr;
  unsigned count = 0;
  if (!XQueryTree(display_.get(), parent, &root, &above, &list, &count)) return;
  const XMemory<Window> children(list, XFree);
  for (const Window window : std::span(list, list ? count : 0)) {
    if (isOurs(window) && isInUse(window)) windows_.push_back(window);
    if (depth < kDeepestFrame) collectBelow(window, depth + 1);
  }
}

// The instance name is left alone: applications of other names call themselves "Mail" there.
bool Windows::isOurs(Window window) {
  XClassHint hint{};
  const bool hasClass = XGetClassHint(display_.get(), window, &hint) != 0;
  const XMemory<char> instance(hint.res_name, XFree);
  const XMemory<char> type(hint.res_class, XFree);
  if (hasClass && type && isSameName(application_, type.get())) return true;
  const long owner = number(window, atom("_NET_WM_PID"), 0);
  return std::find(processes_.begin(), processes_.end(), owner) != processes_.end();
}

bool Windows::isInUse(Window window) {
  XWindowAttributes attributes{};
  if (!XGetWindowAttributes(display_.get(), window, &attributes)) return false;
  if (attributes.c_class != InputOutput) return false;
  return attributes.map_state != IsUnmapped ||
         number(window, atom("WM_STATE"), WithdrawnState) != WithdrawnState;
}

bool Windows::understandsClose(Window window) {
  Atom* list = nullptr;
  int count = 0;
  if (!XGetWMProtocols(display_.get(), window, &list, &count)) return false;
  const XMemory<Atom> protocols(list, XFree);
  return std::count(list, list + count, atom("WM_DELETE_WINDOW")) > 0;
}

long Windows::number(Window window, Atom property, long otherwise) {
  Atom type = None;
  int format = 0;
  unsigned long count = 0;
  unsigned long left = 0;
  unsigned char* bytes = nullptr;
  XGetWindowProperty(display_.get(), window, property, 0, 1, False, AnyPropertyType, &type, &format, &count,
                     &left, &bytes);
  const XMemory<unsigned char> value(bytes, XFree);
  constexpr int kLongs = 32;  // what has 32 bits on the wire is a long here
  return bytes && format == kLongs && count > 0 ? *reinterpret_cast<const long*>(bytes) : otherwise;
}

void Windows::send(Window window, Window receiver, long mask, XClientMessageEvent message) {
  XEvent event{};
  event.xclient = message;
  event.xclient.type = ClientMessage;
  event.xclient.window = window;
  event.xclient.format = 32;
  XSendEvent(display_.get(), receiver, False, mask, &event);
}

bool Windows::askToClose() {
  bool asked = false;
  for (const Window window : windows_) {
    if (!understandsClose(window)) continue;
    XClientMessageEvent message{};
    message.message_type = atom("WM_PROTOCOLS");
    message.data.l[0] = static_cast<long>(atom("WM_DELETE_WINDOW"));
    message.data.l[1] = CurrentTime;
    send(window, window, NoEventMask, message);
    asked = true;
  }
  return asked;
}

bool Windows::raise() {
  constexpr long kOnBehalfOfTheUser = 2;
  for (const Window window : windows_) {
    XClientMessageEvent message{};
    message.message_type = atom("_NET_ACTIVE_WINDOW");
    message.data.l[0] = kOnBehalfOfTheUser;
    send(window, DefaultRootWindow(display_.get()), SubstructureRedirectMask | SubstructureNotifyMask,
         message);
  }
  return !windows_.empty();
}

}  // namespace

bool askWindowsToClose(std::string_view application, const std::vector<pid_t>& processes) {
  return Windows(application, processes).askToClose();
}

bool raiseWindows(std::string_view application, const std::vector<pid_t>& processes) {
  return Windows(application, processes).raise();
}

}  // namespace corvane::osascript
