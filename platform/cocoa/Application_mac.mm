#import <AppKit/AppKit.h>

#import "platform/cocoa/Application.h"

namespace corvane {

int runApplication(int argc, const char** argv) {
  // AppKit would open every bare word of the command line as a file; this program has no arguments.
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  [[NSUserDefaults standardUserDefaults]
      registerDefaults:[NSDictionary dictionaryWithObject:@"NO" forKey:@"NSTreatUnknownArgumentsAsOpen"]];
  [pool release];
  return NSApplicationMain(argc, argv);
}

}  // namespace corvane
