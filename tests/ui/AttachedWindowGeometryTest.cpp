#include "ui/AttachedWindowGeometry.h"

#include <gtest/gtest.h>
#include <ostream>

#include "ui/AttachedWindowSide.h"

namespace corvane {

static void PrintTo(const Rect& rect, std::ostream* out) {
  *out << '(' << rect.x << ", " << rect.y << ", " << rect.width << ", " << rect.height << ')';
}

namespace {

constexpr Size view{100, 50};

// A view of 100 x 50, 5 points from (400, 300). At scale 1 the margin is 2, the arrow 16, the inset 18.
TEST(AttachedWindowGeometryTest, StandsOnItsSideOfThePointWithOrWithoutArrow) {
  const struct {
    PLAttachedWindowSide side;
    Rect frame;
    Point origin;  // of the view
    Rect frameAtScale2;
    Point originAtScale2;
  } rows[] = {{PLSideLeft, {275, 273, 120, 54}, {2, 2}, {255, 271, 140, 58}, {4, 4}},
              {PLSideBottom, {348, 225, 104, 70}, {2, 2}, {346, 205, 108, 90}, {4, 4}},
              {PLSideRight, {405, 273, 120, 54}, {18, 2}, {405, 271, 140, 58}, {36, 4}},
              {PLSideTop, {348, 305, 104, 70}, {2, 18}, {346, 305, 108, 90}, {4, 36}},
              {PLSideLeftRising, {275, 282, 120, 54}, {2, 2}, {255, 264, 140, 58}, {4, 4}},
              {PLSideLeftFalling, {275, 264, 120, 54}, {2, 2}, {255, 278, 140, 58}, {4, 4}},
              {PLSideRightRising, {405, 282, 120, 54}, {18, 2}, {405, 264, 140, 58}, {36, 4}},
              {PLSideRightFalling, {405, 264, 120, 54}, {18, 2}, {405, 278, 140, 58}, {36, 4}},
              {PLSideTopLeftward, {314, 305, 104, 70}, {2, 18}, {328, 305, 108, 90}, {4, 36}},
              {PLSideTopRightward, {382, 305, 104, 70}, {2, 18}, {364, 305, 108, 90}, {4, 36}},
              {PLSideBottomLeftward, {314, 225, 104, 70}, {2, 2}, {328, 205, 108, 90}, {4, 4}},
              {PLSideBottomRightward, {382, 225, 104, 70}, {2, 2}, {364, 205, 108, 90}, {4, 4}}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.side);
    AttachedWindowGeometry window(row.side, 5);
    for (const Length arrow : {Length{1}, Length{0}}) {
      (void)window.setHasArrow(arrow);
      EXPECT_EQ(window.updateGeometry(view, {400, 300}, 1), row.frame);
      EXPECT_EQ(window.viewFrame(), (Rect{row.origin.x, row.origin.y, 100, 50}));
      EXPECT_EQ(window.updateGeometry(view, {400, 300}, 2), row.frameAtScale2);
      EXPECT_EQ(window.viewFrame(), (Rect{row.originAtScale2.x, row.originAtScale2.y, 100, 50}));
    }
  }
}

constexpr auto nothing = AfterSetting::nothing;
constexpr auto background = AfterSetting::updateBackground;
constexpr auto redisplay = AfterSetting::redisplay;

// The window is 54 high without its arrow: 2 times the margin 2, and 50. Defaults: radius 8, base 20. In the
// end are tight ones, where a change of margin or radius fits the measures that depend on it.
TEST(AttachedWindowGeometryTest, StoresWhatFitsAndTellsWhatFollows) {
  using G = AttachedWindowGeometry;
  const struct {
    Size view;
    AfterSetting (G::*set)(Length);
    Length value;
    AfterSetting after;
    Length (G::*get)() const;
    Length stored;
  } rows[] = {
      {{100, 50}, &G::setBorderWidth, 5, background, &G::borderWidth, 2},
      {{100, 50}, &G::setBorderWidth, 1, background, &G::borderWidth, 1},
      {{100, 50}, &G::setBorderWidth, -1, background, &G::borderWidth, -1},
      {{100, 50}, &G::setViewMargin, 2, nothing, &G::viewMargin, 2},
      {{100, 50}, &G::setViewMargin, -3, redisplay, &G::viewMargin, 0},
      {{100, 50}, &G::setCornerRadius, 8, redisplay, &G::cornerRadius, 8},
      {{100, 50}, &G::setCornerRadius, 40, redisplay, &G::cornerRadius, 17},
      {{100, 50}, &G::setCornerRadius, -1, redisplay, &G::cornerRadius, 0},
      {{100, 50}, &G::setArrowBaseWidth, 100, redisplay, &G::arrowBaseWidth, 38},
      {{100, 50}, &G::setArrowBaseWidth, -5, redisplay, &G::arrowBaseWidth, -5},
      {{100, 50}, &G::setArrowHeight, 16, nothing, &G::arrowHeight, 16},
      {{100, 50}, &G::setHasArrow, 1, nothing, &G::hasArrow, 1},
      {{100, 50}, &G::setHasArrow, 0, background, &G::hasArrow, 0},
      {{100, 50}, &G::setHasArrow, 0.5, background, &G::hasArrow, 0},
      {{100, 50}, &G::setHasArrow, 1.5, background, &G::hasArrow, 1},
      {{100, 50}, &G::setDrawsRoundCornerBesideArrow, 1, nothing, &G::drawsRoundCornerBesideArrow, 1},
      {{100, 50}, &G::setDrawsRoundCornerBesideArrow, 0, redisplay, &G::drawsRoundCornerBesideArrow, 0},
      {{30, 90}, &G::setViewMargin, -3, redisplay, &G::cornerRadius, 5},
      {{90, 30}, &G::setViewMargin, 0, redisplay, &G::arrowBaseWidth, 20},
      {{10, 90}, &G::setViewMargin, 0, redisplay, &G::cornerRadius, 0},
      {{10, 90}, &G::setViewMargin, 0, redisplay, &G::arrowBaseWidth, 10},
      {{90, 10}, &G::setCornerRadius, 8, redisplay, &G::arrowBaseWidth, 14},
      {{20, 90}, &G::setArrowBaseWidth, 20, redisplay, &G::arrowBaseWidth, 8},
      {{8, 90}, &G::setArrowBaseWidth, 20, redisplay, &G::arrowBaseWidth, -4}};
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    AttachedWindowGeometry window(PLSideRight, 0);
    (void)window.updateGeometry(row.view, {}, 1);
    EXPECT_EQ((window.*row.set)(row.value), row.after);
    EXPECT_EQ((window.*row.get)(), row.stored);
  }
}

TEST(AttachedWindowGeometryTest, ArrowMayTakeThePlaceOfASquareCorner) {
  AttachedWindowGeometry window(PLSideRight, 0);
  (void)window.updateGeometry(view, {}, 2);
  EXPECT_EQ(window.arrowInset(2), 36);
  ASSERT_EQ(window.setDrawsRoundCornerBesideArrow(0), redisplay);
  EXPECT_EQ(window.arrowInset(2), 20);
  ASSERT_EQ(window.setArrowBaseWidth(100), redisplay);
  EXPECT_EQ(window.arrowBaseWidth(), 46);
}

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
              {desktop, {947.5, 400}, PLSideBottom},
              {desktop, {948, 400}, PLSideBottomLeftward},
              {{0, 0, 100, 400}, {20, 300}, PLSideBottom},
              {{0, 0, 106, 400}, {20, 300}, PLSideBottom},
              {{0, 0, 138, 400}, {86, 300}, PLSideBottomLeftward},
              {{0, 0, 106.5, 400}, {20, 300}, PLSideBottomRightward},
              {{0, 25, 1000, 775}, {500, 95}, PLSideBottom},
              {desktop, {500, 69}, PLSideRight},
              {{0, 25, 1000, 775}, {500, 94}, PLSideRight},
              {desktop, {879.5, 10}, PLSideRightRising},
              {{0, 0, 1000, 60}, {500, 50}, PLSideRightFalling},
              {{0, 0, 1000, 30}, {500, 28}, PLSideRight},
              {desktop, {880, 10}, PLSideLeftRising},
              {{0, 0, 1000, 100}, {950, 50}, PLSideLeft},
              {{0, 0, 1000, 60}, {950, 50}, PLSideLeftFalling},
              {{0, 0, 200, 200}, {100, 30}, PLSideTop},
              {{0, 0, 110, 200}, {100, 30}, PLSideTopLeftward},
              {{0, 0, 110, 200}, {10, 30}, PLSideTopRightward},
              {{0, 0, 200, 60}, {100, 30}, PLSideBottom},
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
