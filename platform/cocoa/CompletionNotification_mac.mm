#import "platform/cocoa/CompletionNotification.h"

namespace corvane {

// The system's own service takes it without waiting for anybody.
void postDistributedNotification(const std::string& name) { postNow(name); }

}  // namespace corvane
