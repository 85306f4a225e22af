// The grey gradient that fills a window, in the form in which a shading function takes it: a record of eight
// numbers and two callbacks. Thread: any.
#pragma once

#include "ui/Geometry.h"

namespace corvane {

/// Components from 0 to 1, not multiplied by alpha.
struct GradientColour {
  Length red = 0;
  Length green = 0;
  Length blue = 0;
  Length alpha = 0;
};

/// Red, green, blue and alpha of the start, then those of the end. The caller owns the record and ends it
/// with releaseGradientRecord. Null when there is no memory.
[[nodiscard]] Length* makeGradientRecord(const GradientColour& start, const GradientColour& end);

/// Writes the four components at `*position`, from 0 at the start to 1 at the end, to `colour`.
void evaluateGradient(void* record, const Length* position, Length* colour);

/// Null is allowed.
void releaseGradientRecord(void* record);

}  // namespace corvane
