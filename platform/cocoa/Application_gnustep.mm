#import <AppKit/AppKit.h>
#import <objc/runtime.h>

#include <unistd.h>
#include <cstdlib>

#include "platform/Display.h"
#include "platform/EndingSignals.h"
#import "platform/cocoa/Application.h"
#import "platform/cocoa/Strings.h"
#import "platform/cocoa/Theme.h"
#include "process/Log.h"

namespace corvane {
namespace {

constexpr const char* kLightGrey = "0.93 0.93 0.93";
constexpr const char* kDefaults[][2] = {
    {"GSSuppressAppIcon", "YES"},
    {"GSAppOwnsMiniwindow", "NO"},
    {"NSExceptionHandlerMask", "1"},
    {"NSFont", "DejaVuSans"},
    {"NSBoldFont", "DejaVuSans-Bold"},
    {"windowBackgroundColor", kLightGrey},
    {"controlBackgroundColor", kLightGrey},
    {"controlHighlightColor", kLightGrey},
    {"controlColor", "0.95 0.95 0.95"},
    {"controlShadowColor", "0.7 0.7 0.7"},
    {"controlDarkShadowColor", "0.45 0.45 0.45"},
    {"alternateSelectedControlColor", "0.22 0.46 0.84"},
};

// Without a window manager nobody else decorates an alert.
NSDictionary* ourDefaults() {
  NSMutableDictionary* defaults = [NSMutableDictionary dictionary];
  for (const auto& [name, value] : kDefaults) [defaults setObject:toNSString(value) forKey:toNSString(name)];
  if (!isWindowManagerRunning()) [defaults setObject:@"NO" forKey:@"GSBackHandlesWindowDecorations"];
  return defaults;
}

// GNUstep would open every bare word of the command line as a file; this program has no arguments.
void hideArguments(const char** argv) {
  char* name[] = {const_cast<char*>(argv[0]), nullptr};
  [NSProcessInfo initializeWithArguments:name count:1 environment:environ];
}

// GNUstep tells all other applications of a launch and an end, through the notification daemon, and waits for
// it on the main thread: one that is stopped would hold the run up for ever. Nobody needs to know of this
// program, so that its centre for such news gets no connection: it is made as the plain one that it extends.
void keepNewsOfApplicationsLocal() {
  Class centre = NSClassFromString(@"_GSWorkspaceCenter");
  Method plain = class_getInstanceMethod([NSNotificationCenter class], @selector(init));
  if (centre == Nil || plain == nullptr) return;
  class_replaceMethod(centre, @selector(init), method_getImplementation(plain),
                      method_getTypeEncoding(plain));
}

void prepare(const char** argv) {
  hideArguments(argv);
  [[NSUserDefaults standardUserDefaults] registerDefaults:ourDefaults()];
  keepNewsOfApplicationsLocal();
  [NSApplication sharedApplication];
  endAtOnceOnSignals();  // not inside its handlers, which may wait for themselves for ever
  installTheme();
}

}  // namespace

int runApplication(int /*argc*/, const char** argv) {
  // What the start leaves behind goes before the run loop is entered, which it never leaves.
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  prepare(argv);
  const bool loaded = [NSBundle loadNibNamed:@"MainMenu" owner:NSApp];
  [pool release];
  // Not NSApplicationMain: that would go on without a window, for ever, when the file cannot be loaded.
  if (loaded) {
    [NSApp run];
  } else {
    log("cannot load the interface file MainMenu");
  }
  return EXIT_FAILURE;
}

}  // namespace corvane
