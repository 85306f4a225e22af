// Joining deflate streams. A complete stream ends with a block that is marked as the last, after which some
// bits of the last byte are empty. Where the mark is and how many bits are empty can only be learned by going
// through the stream. It is worth it for a library that only makes complete streams: on mail that one takes
// 85 to 90 MB/s a thread, where zlib, which could leave its streams open, takes 25 and makes them larger.
// Thread: any.
#pragma once

#include "tools/ditto/Buffer.h"

namespace corvane::ditto {

/// What `stream` holds from `start` on is a complete deflate stream, to which another can then be appended.
/// False when it is none.
[[nodiscard]] bool openEnd(Buffer& stream, std::size_t start);

}  // namespace corvane::ditto
