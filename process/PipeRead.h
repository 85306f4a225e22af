// One read from a pipe, as every run loop does it. Thread: any.
#pragma once

#include <string>

namespace corvane {

/// Reads once from `descriptor` into `buffer`, which is resized to what was read: empty at end of file and on
/// an error, which is answered by false. The buffer's size on entry does not matter. Waits when there is
/// nothing to read yet.
bool readOnce(int descriptor, std::string& buffer);

}  // namespace corvane
