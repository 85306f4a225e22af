#import <AppKit/AppKit.h>

#include <sys/utsname.h>
#include <cstdlib>

#include "platform/SystemFacts.h"
#import "platform/cocoa/Strings.h"
#include "process/QSComputerName.h"

namespace corvane {
namespace {

std::string userFolder(NSSearchPathDirectory directory) {
  NSArray* folders = NSSearchPathForDirectoriesInDomains(directory, NSUserDomainMask, YES);
  return [folders count] == 0 ? std::string() : toUtf8([folders objectAtIndex:0]);
}

std::string getHomeDirectory() { return toUtf8(NSHomeDirectory()); }
std::string getLibraryFolder() { return userFolder(NSLibraryDirectory); }
std::string getAppSupportFolder() { return userFolder(NSApplicationSupportDirectory); }
std::string getDocumentsFolder() { return userFolder(NSDocumentDirectory); }

// The kernel's major version has been the system's minor version plus four since 10.0, and goes on counting
// on systems that no longer call themselves 10.
int minorSystemVersion() {
  constexpr int kKernelAhead = 4;
  utsname system{};
  return ::uname(&system) == 0 ? std::atoi(system.release) - kKernelAhead : 0;
}

}  // namespace

Facts readFacts() {
  // A run without a display has no pool around this.
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  const Facts facts{.homeDirectory = getHomeDirectory(),
                    .libraryFolder = getLibraryFolder(),
                    .appSupportFolder = getAppSupportFolder(),
                    .documentsFolder = getDocumentsFolder(),
                    .toolsFolder = toUtf8([[NSBundle mainBundle] resourcePath]) + "/bin",
                    .userName = toUtf8(NSUserName()),
                    .localizedComputerName = QSComputerName::getLocalizedComputerName(),
                    .appKitVersion = NSAppKitVersionNumber,
                    .minorSystemVersion = minorSystemVersion()};
  [pool drain];
  return facts;
}

}  // namespace corvane
