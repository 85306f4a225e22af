#include "ui/AttachedWindowSide.h"

#include <gtest/gtest.h>

#include "ui/AttachedWindowGeometry.h"

namespace corvane {
namespace {

PLAttachedWindowSide best(const Surroundings& around, Point anchor, Length distance = 0, Length scale = 1) {
  const AttachedWindowGeometry window(PLSideAutomatic, distance);
  return window.bestSideForAutomaticPosition(around, {100, 50}, anchor, scale);
}

constexpr Rect desktop{0, 0, 1000, 800};

// The body is 104 x 54 and needs 16 more towards the anchor; the arrow's inset is 18. Below the point, to its
// right, to its left and above it; below again where nothing fits.
TEST(AutomaticSide, SuitsTheScreen) {
  const struct {
    Rect screen;
    Point anchor;
    PLAttachedWindowSide side;
  } rows[] = {{desktop, {500, 400}, PLSideBottom},
              {desktop, {500, 70}, PLSideBottom},
              {desktop, {20, 400}, PLSideBottomRightward},
              {desktop, {52, 400}, PLSideBottom},
              {desktop, {947.5, 400}, PLSideBottom},
              {desktop, {948, 400}, PLSideBottomLeftward},
              {{0, 0, 100, 400}, {20, 300}, PLSideBottom},
              {{0, 0, 100, 400}, {60, 300}, PLSideBottom},
              {{0, 0, 106, 400}, {20, 300}, PLSideBottom},
              {{0, 0, 138, 400}, {86, 300}, PLSideBottomLeftward},
              {{0, 0, 106.5, 400}, {20, 300}, PLSideBottomRightward},
              {{0, 25, 1000, 775}, {500, 95}, PLSideBottom},
              {desktop, {500, 69}, PLSideRight},
              {{0, 25, 1000, 775}, {500, 94}, PLSideRight},
              {desktop, {10, 10}, PLSideRightRising},
              {desktop, {879.5, 10}, PLSideRightRising},
              {{0, 0, 1000, 40}, {500, 10}, PLSideRight},
              {{0, 0, 1000, 60}, {500, 50}, PLSideRightFalling},
              {{0, 0, 1000, 30}, {500, 28}, PLSideRight},
              {desktop, {880, 10}, PLSideLeftRising},
              {{0, 0, 1000, 100}, {950, 50}, PLSideLeft},
              {{0, 0, 1000, 60}, {950, 50}, PLSideLeftFalling},
              {{0, 0, 150, 60}, {120, 50}, PLSideLeftFalling},
              {{0, 0, 200, 200}, {100, 30}, PLSideTop},
              {{0, 0, 110, 200}, {100, 30}, PLSideTopLeftward},
              {{0, 0, 110, 200}, {10, 30}, PLSideTopRightward},
              {{0, 0, 200, 60}, {100, 30}, PLSideBottom},
              {{0, 0, 200, 100}, {100, 30}, PLSideBottom},
              {{0, 0, 110, 60}, {10, 30}, PLSideBottomRightward},
              {{0, 0, 110, 60}, {100, 30}, PLSideBottomLeftward}};
  for (const auto& row : rows) EXPECT_EQ(best({row.screen, row.screen}, row.anchor), row.side) << &row - rows;
}

TEST(AutomaticSide, KeepsWithinTheParentWhereTheScreenHasRoom) {
  const Rect parent{300, 300, 140, 100}, low{0, 0, 1000, 100}, lower{0, 0, 1000, 96}, high{0, 25, 1000, 75};
  const struct {
    Rect screen, bounds;
    Point anchor;
    PLAttachedWindowSide side;
  } rows[] = {{desktop, parent, {310, 350}, PLSideBottomRightward},
              {desktop, parent, {370, 350}, PLSideBottom},
              {desktop, parent, {390, 350}, PLSideBottomLeftward},
              {low, low, {350, 60}, PLSideRight},
              {low, {300, 40, 100, 60}, {350, 60}, PLSideRightRising},
              {lower, {300, 40, 100, 56}, {350, 60}, PLSideRight},
              {low, {300, 0, 100, 80}, {350, 60}, PLSideRightFalling},
              {high, {300, 25, 100, 55}, {350, 60}, PLSideRight},
              {low, {900, 40, 100, 60}, {950, 60}, PLSideLeftRising},
              {lower, {900, 40, 100, 56}, {950, 60}, PLSideLeft},
              {low, {900, 0, 100, 80}, {950, 60}, PLSideLeftFalling},
              {high, {900, 25, 100, 55}, {950, 60}, PLSideLeft}};
  for (const auto& row : rows) EXPECT_EQ(best({row.screen, row.bounds}, row.anchor), row.side) << &row - rows;
}

TEST(AutomaticSide, ReckonsWithDistanceAndScale) {
  EXPECT_EQ(best({desktop, desktop}, {500, 100}, 10, 2), PLSideBottom);
  EXPECT_EQ(best({desktop, desktop}, {500, 99.5}, 10, 2), PLSideRight);
}

TEST(AutomaticSide, IsNoSideOfItsOwn) {
  EXPECT_FALSE(isResolved(PLSideAutomatic));
  EXPECT_TRUE(isResolved(PLSideBottomRightward));
  EXPECT_FALSE(isResolved(static_cast<PLAttachedWindowSide>(13)));
}

}  // namespace
}  // namespace corvane
