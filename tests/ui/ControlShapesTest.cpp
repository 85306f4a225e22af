#include "ui/ControlShapes.h"

#include <gtest/gtest.h>

#include <cmath>

namespace corvane {
namespace {

TEST(ControlShapesTest, ABarIsNeverFilledBeyondItsEnds) {
  const Rect bar{10, 5, 200, 12};
  EXPECT_EQ(filledPart(bar, 0.25), (Rect{10, 5, 50, 12}));
  EXPECT_EQ(filledPart(bar, -1), (Rect{10, 5, 0, 12}));
  EXPECT_EQ(filledPart(bar, INFINITY), bar);
  EXPECT_EQ(filledPart(bar, NAN), (Rect{10, 5, 0, 12}));
}

TEST(ControlShapesTest, StripesCoverTheBarAtEveryStepAndComeAround) {
  const Rect bar{10, 5, 200, 12};
  for (int step = -1; step <= kStripeSteps; ++step) {
    const auto all = stripes(bar, step);
    ASSERT_FALSE(all.empty());
    EXPECT_LE(all.front().corners[2].x, bar.x + 16) << "a gap at the left end";
    EXPECT_GE(all.back().corners[1].x, bar.x + bar.width - 16) << "a gap at the right end";
  }
  EXPECT_EQ(stripes(bar, 0).front().corners[0], stripes(bar, kStripeSteps).front().corners[0]);
  EXPECT_LT(stripes(bar, 0).front().corners[0].x, stripes(bar, 1).front().corners[0].x);
}

}  // namespace
}  // namespace corvane
