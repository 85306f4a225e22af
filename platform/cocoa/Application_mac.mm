#import <AppKit/AppKit.h>

#import "platform/cocoa/Application.h"

namespace corvane {

int runApplication(int argc, const char** argv) { return NSApplicationMain(argc, argv); }

}  // namespace corvane
