#import <AppKit/AppKit.h>

#include "platform/Trash.h"
#import "platform/cocoa/Strings.h"

namespace corvane {

bool moveToTrash(const std::string& path, std::string& problem) {
  NSString* folder = toNSString(path);
  NSArray* names = [NSArray arrayWithObject:[folder lastPathComponent]];
  NSInteger tag = 0;
  const bool moved =
      [[NSWorkspace sharedWorkspace] performFileOperation:NSWorkspaceRecycleOperation
                                                   source:[folder stringByDeletingLastPathComponent]
                                              destination:@""
                                                    files:names
                                                      tag:&tag];
  if (!moved) problem = "cannot move to the Trash " + path + ": the system refused";
  return moved;
}

}  // namespace corvane
