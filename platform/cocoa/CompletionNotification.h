// Announcements to other processes. Needs no display. Thread: main.
#pragma once

#include <string>

namespace corvane {

/// Posts a distributed notification with no object and no user information, to be delivered at once. Takes
/// five seconds at most, in all calls together: a daemon that does not answer must not hold the end of a run
/// up. A failure is logged.
void postDistributedNotification(const std::string& name);

/// The same on the calling thread, which waits for the daemon as long as it takes.
void postNow(const std::string& name);

}  // namespace corvane
