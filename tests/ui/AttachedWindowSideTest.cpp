#include "ui/AttachedWindowSide.h"

#include <gtest/gtest.h>

#include "ui/AttachedWindowGeometry.h"

namespace corvane {
namespace {

struct Search {
  Rect screen;
  Point anchor;
  PLAttachedWindowSide best;
};

PLAttachedWindowSide best(const Surroundings& around, Point anchor, Length distance = 0, Length scale = 1) {
  const AttachedWindowGeometry window(PLSideAutomatic, distance);
  return window.bestSideForAutomaticPosition(around, {100, 50}, anchor, scale);
}

class AutomaticSideTest : public testing::TestWithParam<Search> {};

// The body is 104 x 54 and needs 16 more towards the anchor; the arrow's inset is 18.
TEST_P(AutomaticSideTest, SuitsTheScreen) {
  const auto& [screen, anchor, side] = GetParam();
  EXPECT_EQ(best({screen, screen}, anchor), side);
}

constexpr Rect desktop{0, 0, 1000, 800};

INSTANTIATE_TEST_SUITE_P(Below, AutomaticSideTest,
                         testing::Values(Search{desktop, {500, 400}, PLSideBottom},
                                         Search{desktop, {500, 70}, PLSideBottom},
                                         Search{desktop, {20, 400}, PLSideBottomRightward},
                                         Search{desktop, {52, 400}, PLSideBottom},
                                         Search{desktop, {947.5, 400}, PLSideBottom},
                                         Search{desktop, {948, 400}, PLSideBottomLeftward},
                                         Search{{0, 0, 100, 400}, {20, 300}, PLSideBottom},
                                         Search{{0, 0, 100, 400}, {60, 300}, PLSideBottom},
                                         Search{{0, 0, 106, 400}, {20, 300}, PLSideBottom},
                                         Search{{0, 0, 138, 400}, {86, 300}, PLSideBottomLeftward},
                                         Search{{0, 0, 106.5, 400}, {20, 300}, PLSideBottomRightward},
                                         Search{{0, 25, 1000, 775}, {500, 95}, PLSideBottom}));

INSTANTIATE_TEST_SUITE_P(RightOfThePoint, AutomaticSideTest,
                         testing::Values(Search{desktop, {500, 69}, PLSideRight},
                                         Search{{0, 25, 1000, 775}, {500, 94}, PLSideRight},
                                         Search{desktop, {10, 10}, PLSideRightRising},
                                         Search{desktop, {879.5, 10}, PLSideRightRising},
                                         Search{{0, 0, 1000, 40}, {500, 10}, PLSideRight},
                                         Search{{0, 0, 1000, 60}, {500, 50}, PLSideRightFalling},
                                         Search{{0, 0, 1000, 30}, {500, 28}, PLSideRight}));

INSTANTIATE_TEST_SUITE_P(LeftOfThePoint, AutomaticSideTest,
                         testing::Values(Search{desktop, {880, 10}, PLSideLeftRising},
                                         Search{{0, 0, 1000, 100}, {950, 50}, PLSideLeft},
                                         Search{{0, 0, 1000, 60}, {950, 50}, PLSideLeftFalling},
                                         Search{{0, 0, 150, 60}, {120, 50}, PLSideLeftFalling}));

INSTANTIATE_TEST_SUITE_P(Above, AutomaticSideTest,
                         testing::Values(Search{{0, 0, 200, 200}, {100, 30}, PLSideTop},
                                         Search{{0, 0, 110, 200}, {100, 30}, PLSideTopLeftward},
                                         Search{{0, 0, 110, 200}, {10, 30}, PLSideTopRightward}));

INSTANTIATE_TEST_SUITE_P(NothingFits, AutomaticSideTest,
                         testing::Values(Search{{0, 0, 200, 60}, {100, 30}, PLSideBottom},
                                         Search{{0, 0, 200, 100}, {100, 30}, PLSideBottom},
                                         Search{{0, 0, 110, 60}, {10, 30}, PLSideBottomRightward},
                                         Search{{0, 0, 110, 60}, {100, 30}, PLSideBottomLeftward}));

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
