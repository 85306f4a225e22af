#import "platform/cocoa/CocoaWorkspace.h"

#import <AppKit/AppKit.h>

#include <algorithm>

#include "platform/DesktopOpen.h"
#include "platform/EndingSignals.h"
#include "platform/Trash.h"
#import "platform/cocoa/CompletionNotification.h"
#import "platform/cocoa/Strings.h"
#include "process/FileMask.h"
#include "process/Log.h"

namespace corvane {

void CocoaWorkspace::launchApplication(const std::string& name) {
  const UsersFileMask mask;
  if (![[NSWorkspace sharedWorkspace] launchApplication:toNSString(name)]) log("cannot launch " + name);
}

void CocoaWorkspace::openFile(const std::string& path, const std::string& application) {
  const UsersFileMask mask;
  const bool opened = [[NSWorkspace sharedWorkspace] openFile:toNSString(path)
                                              withApplication:toNSString(application)];
  if (!opened && !openWithDesktop(path)) log("cannot open " + path);
}

void CocoaWorkspace::noteFileSystemChanged(const std::string& path) {
  [[NSWorkspace sharedWorkspace] noteFileSystemChanged:toNSString(path)];
}

void CocoaWorkspace::postNotification(const std::string& name) { postDistributedNotification(name); }

// The program shows no icon to click on: the alert has to come to the front by itself.
std::size_t CocoaWorkspace::showAlert(const Alert& alert) {
  NSAlert* panel = [[NSAlert alloc] init];
  [panel setAlertStyle:static_cast<NSAlertStyle>(alert.style)];
  [panel setMessageText:toNSString(alert.message)];
  [panel setInformativeText:toNSString(alert.information)];
  for (const auto& title : alert.buttons) [panel addButtonWithTitle:toNSString(title)];
  [NSApp activateIgnoringOtherApps:YES];
  const EndAtOnceOnSignals atOnce;  // the run loop would serve a cancel, and the question stay up
  const NSInteger answer = [panel runModal];
  [panel release];
  // Others, as when the alert is ended from outside, are negative and so become large ones.
  return std::min(static_cast<std::size_t>(answer - NSAlertFirstButtonReturn), alert.buttons.size());
}

void CocoaWorkspace::moveToTrash(const std::string& folder) {
  std::string problem;
  if (!corvane::moveToTrash(folder, problem)) log(problem);
}

// Not at once: while the interface file is being loaded the application cannot be ended yet, and the caller
// has a callback to return from.
void CocoaWorkspace::terminate(int status) {
  if (!status_) status_ = status;
  [NSApp performSelector:@selector(terminate:) withObject:nil afterDelay:0.0];
}

}  // namespace corvane
