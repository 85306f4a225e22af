// Starting an application that goes on without whoever started it. Thread: any.
#pragma once

#include <string>

#include "tools/osascript/Applications.h"

namespace corvane::osascript {

/// Starts `application` as the leader of a session of its own, with nothing to read, its output thrown away,
/// and no other file of ours open; in its folder, else the user's home, with the user's own mask for new
/// files. Does not wait for it. Empty, or why it could not be started.
[[nodiscard]] std::string startDetached(Application application);

}  // namespace corvane::osascript
