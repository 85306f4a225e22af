#import "platform/cocoa/CocoaRunLoop.h"

#import <AppKit/AppKit.h>
#include <fcntl.h>

#include <string>
#include <utility>

#include "process/PipeRead.h"

namespace corvane {

// What the two Objective-C objects below report to. Free of data, because GNU's Objective-C cannot encode the
// standard library's function type.
class Arrival {
 public:
  virtual ~Arrival() = default;
  virtual void arrived() = 0;
};

}  // namespace corvane

// The target of one timer. Its source is nil once that is gone.
@interface QSRepeatingTimer : NSObject {
  NSTimer* timer_;
  corvane::Arrival* source_;
}
- (id)initWithInterval:(NSTimeInterval)seconds source:(corvane::Arrival*)source;
- (void)timerFired:(NSTimer*)timer;
- (void)stop;
@end

// The observer of one descriptor. It waits in the background; its source reads on the main thread and then
// asks it to wait again.
@interface QSBackgroundReader : NSObject {
  NSFileHandle* handle_;
  corvane::Arrival* source_;
}
- (id)initWithDescriptor:(int)descriptor source:(corvane::Arrival*)source;
- (void)wait;
- (void)dataAvailable:(NSNotification*)notification;
- (void)stop;
@end

namespace corvane {
namespace {

// Also while the user drags the window or an alert is up.
NSArray* servedModes() {
  return [NSArray
      arrayWithObjects:NSDefaultRunLoopMode, NSModalPanelRunLoopMode, NSEventTrackingRunLoopMode, nil];
}

}  // namespace

// Both sources call a copy of what they hold, since the call may destroy them.

class TimerSource : public RunLoop::Source, private Arrival {
 public:
  TimerSource(double seconds, std::function<void()> action) : action_(std::move(action)) {
    target_ = [[QSRepeatingTimer alloc] initWithInterval:seconds source:this];
  }
  ~TimerSource() override {
    [target_ stop];
    [target_ release];
  }
  TimerSource(const TimerSource&) = delete;
  TimerSource& operator=(const TimerSource&) = delete;

 private:
  void arrived() override {
    const auto action = action_;
    action();
  }

  const std::function<void()> action_;
  QSRepeatingTimer* target_ = nil;
};

class ReaderSource : public RunLoop::Source, private Arrival {
 public:
  ReaderSource(int descriptor, RunLoop::ReadHandler handler)
      : descriptor_(descriptor), handler_(std::move(handler)) {
    observer_ = [[QSBackgroundReader alloc] initWithDescriptor:descriptor source:this];
  }
  ~ReaderSource() override {
    [observer_ stop];
    [observer_ release];
  }
  ReaderSource(const ReaderSource&) = delete;
  ReaderSource& operator=(const ReaderSource&) = delete;

 private:
  void arrived() override {
    readOnce(descriptor_, buffer_);
    if (!buffer_.empty()) [observer_ wait];
    const auto handler = handler_;
    const std::string bytes = std::move(buffer_);
    handler(bytes);
  }

  const int descriptor_;
  const RunLoop::ReadHandler handler_;
  std::string buffer_;
  QSBackgroundReader* observer_ = nil;
};

}  // namespace corvane

@implementation QSRepeatingTimer

- (id)initWithInterval:(NSTimeInterval)seconds source:(corvane::Arrival*)source {
  self = [super init];
  if (self == nil) return nil;
  source_ = source;
  timer_ = [NSTimer timerWithTimeInterval:seconds
                                   target:self
                                 selector:@selector(timerFired:)
                                 userInfo:nil
                                  repeats:YES];
  NSEnumerator* modes = [corvane::servedModes() objectEnumerator];
  while (NSString* mode = [modes nextObject]) [[NSRunLoop currentRunLoop] addTimer:timer_ forMode:mode];
  return self;
}

- (void)timerFired:(NSTimer*)timer {
  if (timer == timer_) source_->arrived();
}

- (void)stop {
  [timer_ invalidate];
  timer_ = nil;
}

@end

@implementation QSBackgroundReader

- (id)initWithDescriptor:(int)descriptor source:(corvane::Arrival*)source {
  self = [super init];
  if (self == nil) return nil;
  source_ = source;
  // A duplicate of its own: the pipe may be closed while a wait is still outstanding.
  const int duplicate = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
  handle_ = [[NSFileHandle alloc] initWithFileDescriptor:duplicate closeOnDealloc:YES];
  [[NSNotificationCenter defaultCenter] addObserver:self
                                           selector:@selector(dataAvailable:)
                                               name:NSFileHandleDataAvailableNotification
                                             object:handle_];
  [self wait];
  return self;
}

- (void)wait {
  [handle_ waitForDataInBackgroundAndNotifyForModes:corvane::servedModes()];
}

- (void)dataAvailable:(NSNotification*)notification {
  (void)notification;
  if (handle_ != nil) source_->arrived();  // nil: it was on its way when the reader was stopped
}

- (void)stop {
  [[NSNotificationCenter defaultCenter] removeObserver:self];
  [handle_ autorelease];  // not at once: this may be inside its own notification
  handle_ = nil;
}

@end

namespace corvane {

std::unique_ptr<RunLoop::Source> CocoaRunLoop::repeat(double seconds, std::function<void()> fire) {
  return std::make_unique<TimerSource>(seconds, std::move(fire));
}

std::unique_ptr<RunLoop::Source> CocoaRunLoop::read(int descriptor, ReadHandler handler) {
  return std::make_unique<ReaderSource>(descriptor, std::move(handler));
}

}  // namespace corvane
