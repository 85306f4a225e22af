// Joining deflate streams. A complete stream ends with a block that is marked as the last, after which some
// bits of the last byte are empty. Where the mark is and how many bits are empty can only be learned by going
// through the stream. Thread: any.
#pragma once

#include "tools/ditto/Buffer.h"

namespace corvane::ditto {

/// What `stream` holds from `start` on is a complete deflate stream, to which another can then be appended.
/// False when it is none.
[[nodiscard]] bool openEnd(Buffer& stream, std::size_t start);

}  // namespace corvane::ditto
