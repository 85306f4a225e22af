// notification-listener NAME: prints a line when it is ready, and one for every distributed notification of
// that name that carries neither object nor user information. Runs until it is ended.

#import <Foundation/Foundation.h>

#include <cstdio>

@interface Listener : NSObject
- (void)heard:(NSNotification*)notification;
@end

@implementation Listener
- (void)heard:(NSNotification*)notification {
  const bool bare = [notification object] == nil && [[notification userInfo] count] == 0;
  std::puts(bare ? "heard" : "heard with extras");
  std::fflush(stdout);
}
@end

int main(int argc, char** argv) {
  if (argc != 2) return 1;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  Listener* listener = [[Listener alloc] init];
  [[NSDistributedNotificationCenter defaultCenter] addObserver:listener
                                                      selector:@selector(heard:)
                                                          name:[NSString stringWithUTF8String:argv[1]]
                                                        object:nil];
  std::puts("ready");
  std::fflush(stdout);
  [[NSRunLoop currentRunLoop] run];
  [pool release];
  return 0;
}
