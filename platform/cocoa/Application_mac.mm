#import <AppKit/AppKit.h>

#import "platform/cocoa/Application.h"

namespace corvane {

int runApplication(int argc, const char** argv) {
  // AppKit would open every bare word of the command line as a file; this program has no arguments.
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  [[NSUserDefaults standardUserDefaults]
      registerDefaults:[NSDictionary dictionaryWithObject:@"NO" forKey:@"NSTreatUnknownArgumentsAsOpen"]];
  // The system slows down what nobody looks at, and would do so to a backup. Kept until the program ends.
  [[[NSProcessInfo processInfo] beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                                                  reason:@"Backup"] retain];
  [pool release];
  return NSApplicationMain(argc, argv);
}

}  // namespace corvane
