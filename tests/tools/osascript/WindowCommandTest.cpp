// The command itself, with real windows.
#include "tests/support/VirtualDisplay.h"
#include "tests/tools/osascript/CommandFixture.h"

// After the test framework, whose names the window system's macros would take.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace corvane {
namespace {

// A client of the window system with one window, to which messages can be sent.
class TestWindow {
 public:
  explicit TestWindow(const std::string& display) : display_(XOpenDisplay(display.c_str()), XCloseDisplay) {
    root_ = DefaultRootWindow(display_.get());
    XSelectInput(display_.get(), root_, SubstructureNotifyMask);
    window_ = XCreateSimpleWindow(display_.get(), root_, 0, 0, 20, 20, 0, 0, 0);
  }
  void setNames(std::string instance, std::string type) {
    XClassHint hint{instance.data(), type.data()};
    XSetClassHint(display_.get(), window_, &hint);
  }
  void setProcess(long pid) { setNumber("_NET_WM_PID", pid); }
  void setMinimized() {
    constexpr long kIconic = 3;
    setNumber("WM_STATE", kIconic);
  }
  void setCloseable() {
    Atom close = atom("WM_DELETE_WINDOW");
    XSetWMProtocols(display_.get(), window_, &close, 1);
  }
  void show() { XMapWindow(display_.get(), window_); }
  void finish() { XSync(display_.get(), False); }

  /// Takes the messages that have arrived; true when `name` is among them.
  bool hasReceived(const char* protocol, const char* name = nullptr) {
    finish();
    bool found = false;
    for (XEvent event; XCheckTypedEvent(display_.get(), ClientMessage, &event);) {
      const auto& message = event.xclient;
      found |= message.window == window_ && message.message_type == atom(protocol) &&
               (!name || message.data.l[0] == static_cast<long>(atom(name)));
    }
    return found;
  }

 private:
  Atom atom(const char* name) { return XInternAtom(display_.get(), name, False); }
  void setNumber(const char* property, long value) {
    XChangeProperty(display_.get(), window_, atom(property), atom("CARDINAL"), 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(&value), 1);
  }

  std::unique_ptr<::Display, int (*)(::Display*)> display_;
  Window root_ = None;
  Window window_ = None;
};

struct WindowCase {
  const char* description;
  const char* suffix;  // of its class, after the name of the application
  bool namesProcess;
  bool isShown;
  bool isMinimized;
  bool canClose;
  bool isAsked;
};

const WindowCase kWindowCases[] = {
    {"by its class", "", false, true, false, true, true},
    {"by its process", " Other", true, true, false, true, true},
    {"minimized", "", false, false, true, true, true},
    {"somebody else's", " Sync", false, true, false, true, false},
    {"never shown", "", true, false, false, true, false},
    {"cannot be asked", "", true, true, false, false, false},
};

TEST_F(CommandTest, AsksWindowsToCloseAndEndsOnlyWhatHasNone) {
  const VirtualDisplay display;
  ASSERT_EQ(display.problem(), "");
  set("DISPLAY", display.name());
  for (const auto& row : kWindowCases) {
    SCOPED_TRACE(row.description);
    StandIn owner(scratch_, standIn_);
    TestWindow window(display.name());
    window.setNames(standIn_, standIn_ + row.suffix);
    if (row.namesProcess) window.setProcess(owner.pid());
    if (row.isMinimized) window.setMinimized();
    if (row.canClose) window.setCloseable();
    if (row.isShown) window.show();
    window.finish();
    EXPECT_EQ(tell(standIn_, "quit").status, 0);
    EXPECT_EQ(window.hasReceived("WM_PROTOCOLS", "WM_DELETE_WINDOW"), row.isAsked);
    EXPECT_EQ(owner.endingSignal(), row.isAsked ? SIGVTALRM : SIGTERM);
  }
}

TEST_F(CommandTest, BringsARunningApplicationToTheFront) {
  const VirtualDisplay display;
  ASSERT_EQ(display.problem(), "");
  set("DISPLAY", display.name());
  TestWindow window(display.name());
  window.setNames("other", standIn_);
  window.show();
  window.finish();
  EXPECT_EQ(tell(standIn_, "activate").status, 0);
  EXPECT_TRUE(window.hasReceived("_NET_ACTIVE_WINDOW"));
}

}  // namespace
}  // namespace corvane
