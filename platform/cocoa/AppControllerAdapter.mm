#import "platform/cocoa/AppControllerAdapter.h"

#include <unistd.h>
#include <cstdlib>

#include "app/AppController.h"
#include "platform/CurrentDate.h"
#include "platform/EndingSignals.h"
#include "platform/SystemFacts.h"
#include "platform/SystemPropertyLists.h"
#include "platform/SystemVolumes.h"
#import "platform/cocoa/CocoaProgressWindow.h"
#import "platform/cocoa/CocoaRunLoop.h"
#import "platform/cocoa/CocoaWorkspace.h"

namespace corvane {

namespace {

AppController* conductor = nullptr;  // of the run that is going on
pid_t conductorsProcess = -1;

// A window system that is gone leaves by `exit`, from inside any call to it; so does a framework's child that
// cannot become the program it was made for, and it may share this memory.
void abandonRun() {
  if (conductor && ::getpid() == conductorsProcess) conductor->abandon();
}

}  // namespace

// One run with a window; what uses the other members comes last, so that it goes first.
struct CocoaRun {
  explicit CocoaRun(const ProgressViews& views) : window(views) {
    conductor = &controller;
    conductorsProcess = ::getpid();
    std::atexit(abandonRun);
  }
  ~CocoaRun() { conductor = nullptr; }
  CocoaRun(const CocoaRun&) = delete;
  CocoaRun& operator=(const CocoaRun&) = delete;

  CocoaRunLoop runLoop;
  CocoaWorkspace workspace;
  SystemPropertyLists propertyLists;
  SystemVolumes volumes;
  CocoaProgressWindow window;
  AppController controller{
      readFacts(),
      {window, window, window, window, workspace, runLoop, propertyLists, volumes, corvane::currentDate}};
  EndingSignals signals{runLoop, [this] { controller.cancelBackup(); }};
};

}  // namespace corvane

@implementation AppController

- (void)awakeFromNib {
  if (run_) return;  // some loaders wake the owner of a file more than once
  [NSApp setDelegate:self];
  run_ = std::make_unique<corvane::CocoaRun>(
      corvane::ProgressViews{backupNowView, backupProgress, overallProgress, modeTextField, backupNowStatus,
                             failureHint, openLogButton});
  run_->controller.awakeFromNib();
}

// The window system may have installed its own handlers by now, which may wait for themselves for ever.
- (void)applicationWillFinishLaunching:(NSNotification*)notification {
  (void)notification;
  run_->signals.takeOver();
}

- (IBAction)cancelBackup:(id)sender {
  (void)sender;
  run_->controller.cancelBackup();
}

- (IBAction)displayLogWindow:(id)sender {
  (void)sender;
  run_->controller.displayLogWindow();
}

// Newer systems put a warning into the log when they are not told.
- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)application {
  return YES;
}

// Left by itself the application would always exit with 0.
- (void)applicationWillTerminate:(NSNotification*)notification {
  (void)notification;
  const int status = run_->workspace.exitStatus();
  run_.reset();
  std::exit(status);
}

@end
