#import "platform/cocoa/CompletionNotification.h"

#import <Foundation/Foundation.h>

#import "platform/cocoa/Guard.h"
#import "platform/cocoa/Strings.h"
#include "process/Log.h"

namespace corvane {

void postNow(const std::string& name) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  NSException* raised = guarded([&] {
    [[NSDistributedNotificationCenter defaultCenter] postNotificationName:toNSString(name)
                                                                   object:nil
                                                                 userInfo:nil
                                                       deliverImmediately:YES];
  });
  if (raised != nil) log("cannot post " + name + ": " + toUtf8([raised reason]));
  [pool release];
}

}  // namespace corvane
