// The shapes of the bars and buttons that the program draws itself where the system's own look dated.
// Pure functions; any thread. Lengths are points.
#pragma once

#include <vector>

#include "ui/Geometry.h"

namespace corvane {

/// The part of a bar that `fraction` (0 to 1; clamped, and 0 when it is no number) of it fills, from the
/// left.
[[nodiscard]] Rect filledPart(Rect bar, double fraction);

/// A slanted stripe by its four corners, counter-clockwise from the lower left one.
struct Stripe {
  Point corners[4];
};

/// The stripes that cover `bar` at step `step` of its animation. They move to the right, and look the same
/// again after `kStripeSteps` steps.
[[nodiscard]] std::vector<Stripe> stripes(Rect bar, int step);
inline constexpr int kStripeSteps = 16;

}  // namespace corvane
