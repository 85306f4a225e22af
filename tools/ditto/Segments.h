// Telling what will become much smaller from what will not, pictures and what mail makes of them above all,
// by looking at a quarter of it. Thread: any.
#pragma once

#include "tools/ditto/Deflater.h"

namespace corvane::ditto {

struct Segment {
  std::size_t size = 0;
  Effort effort = Effort::thorough;
};

/// How much of `bytes`, from their first on, is of one kind: all of them, or up to where enough of the other
/// kind begins to be worth the interruption.
[[nodiscard]] Segment firstSegment(Bytes bytes);

}  // namespace corvane::ditto
