#import "platform/cocoa/CocoaRunLoop.h"

#import <AppKit/AppKit.h>

#include <string>
#include <utility>

#include "process/PipeRead.h"

// The target of one timer.
@interface QSRepeatingTimer : NSObject {
  NSTimer* timer_;
  std::function<void()> fire_;
}
- (id)initWithInterval:(NSTimeInterval)seconds action:(std::function<void()>*)fire;
- (void)timerFired:(NSTimer*)timer;
- (void)stop;
@end

// The observer of one descriptor. It waits in the background and reads on the main thread.
@interface QSBackgroundReader : NSObject {
  NSFileHandle* handle_;
  corvane::RunLoop::ReadHandler handler_;
  std::string buffer_;
}
- (id)initWithDescriptor:(int)descriptor handler:(corvane::RunLoop::ReadHandler*)handler;
- (void)dataAvailable:(NSNotification*)notification;
- (void)stop;
@end

namespace {

// Also while the user drags the window or an alert is up.
NSArray* servedModes() {
  return [NSArray
      arrayWithObjects:NSDefaultRunLoopMode, NSModalPanelRunLoopMode, NSEventTrackingRunLoopMode, nil];
}

// What the C++ side holds: its end stops the object.
template <typename Object>
struct Handle : corvane::RunLoop::Source {
  explicit Handle(Object* owned) : object(owned) {}
  ~Handle() override {
    [object stop];
    [object release];
  }
  Object* const object;
};

}  // namespace

@implementation QSRepeatingTimer

- (id)initWithInterval:(NSTimeInterval)seconds action:(std::function<void()>*)fire {
  self = [super init];
  if (self == nil) return nil;
  fire_ = std::move(*fire);
  timer_ = [NSTimer timerWithTimeInterval:seconds
                                   target:self
                                 selector:@selector(timerFired:)
                                 userInfo:nil
                                  repeats:YES];
  NSEnumerator* modes = [servedModes() objectEnumerator];
  while (NSString* mode = [modes nextObject]) [[NSRunLoop currentRunLoop] addTimer:timer_ forMode:mode];
  return self;
}

- (void)timerFired:(NSTimer*)timer {
  [[self retain] autorelease];  // the action may let go of the timer
  if (timer == timer_) fire_();
}

- (void)stop {
  [timer_ invalidate];
  timer_ = nil;
}

@end

@implementation QSBackgroundReader

- (id)initWithDescriptor:(int)descriptor handler:(corvane::RunLoop::ReadHandler*)handler {
  self = [super init];
  if (self == nil) return nil;
  handler_ = std::move(*handler);
  handle_ = [[NSFileHandle alloc] initWithFileDescriptor:descriptor closeOnDealloc:NO];
  [[NSNotificationCenter defaultCenter] addObserver:self
                                           selector:@selector(dataAvailable:)
                                               name:NSFileHandleDataAvailableNotification
                                             object:handle_];
  [handle_ waitForDataInBackgroundAndNotifyForModes:servedModes()];
  return self;
}

- (void)dataAvailable:(NSNotification*)notification {
  [[self retain] autorelease];  // the handler may let go of the reader
  corvane::readOnce([[notification object] fileDescriptor], buffer_);
  if (!buffer_.empty()) [handle_ waitForDataInBackgroundAndNotifyForModes:servedModes()];
  handler_(buffer_);
}

- (void)stop {
  [[NSNotificationCenter defaultCenter] removeObserver:self];
  [handle_ release];
  handle_ = nil;
}

@end

namespace corvane {

std::unique_ptr<RunLoop::Source> CocoaRunLoop::repeat(double seconds, std::function<void()> fire) {
  return std::make_unique<Handle<QSRepeatingTimer>>([[QSRepeatingTimer alloc] initWithInterval:seconds
                                                                                        action:&fire]);
}

std::unique_ptr<RunLoop::Source> CocoaRunLoop::read(int descriptor, ReadHandler handler) {
  return std::make_unique<Handle<QSBackgroundReader>>(
      [[QSBackgroundReader alloc] initWithDescriptor:descriptor handler:&handler]);
}

}  // namespace corvane
