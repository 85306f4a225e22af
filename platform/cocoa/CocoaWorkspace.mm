#import "platform/cocoa/CocoaWorkspace.h"

#import <AppKit/AppKit.h>

#include "platform/DesktopOpen.h"
#import "platform/cocoa/CompletionNotification.h"
#import "platform/cocoa/Strings.h"
#include "process/Log.h"

namespace corvane {

void CocoaWorkspace::launchApplication(const std::string& name) {
  if (![[NSWorkspace sharedWorkspace] launchApplication:toNSString(name)]) log("cannot launch " + name);
}

void CocoaWorkspace::openFile(const std::string& path, const std::string& application) {
  const bool opened = [[NSWorkspace sharedWorkspace] openFile:toNSString(path)
                                              withApplication:toNSString(application)];
  if (!opened && !openWithDesktop(path)) log("cannot open " + path);
}

void CocoaWorkspace::postNotification(const std::string& name) { postDistributedNotification(name); }

// Not at once: while the interface file is being loaded the application cannot be ended yet, and the caller
// has a callback to return from.
void CocoaWorkspace::terminate(int status) {
  if (!status_) status_ = status;
  [NSApp performSelector:@selector(terminate:) withObject:nil afterDelay:0.0];
}

}  // namespace corvane
