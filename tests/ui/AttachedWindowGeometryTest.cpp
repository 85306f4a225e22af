#include "ui/AttachedWindowGeometry.h"

#include <gtest/gtest.h>
#include <ostream>

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
    for (const Length arrow : {1, 0}) {
      (void)window.setHasArrow(arrow);
      EXPECT_EQ(window.updateGeometry(view, {400, 300}, 1), row.frame);
      EXPECT_EQ(window.viewFrame(), (Rect{row.origin.x, row.origin.y, 100, 50}));
      EXPECT_EQ(window.updateGeometry(view, {400, 300}, 2), row.frameAtScale2);
      EXPECT_EQ(window.viewFrame(), (Rect{row.originAtScale2.x, row.originAtScale2.y, 100, 50}));
    }
  }
}

using Setter = AfterSetting (AttachedWindowGeometry::*)(Length);
using Getter = Length (AttachedWindowGeometry::*)() const;
using G = AttachedWindowGeometry;

struct Setting {
  Size view;
  Setter set;
  Length value;
  AfterSetting after;
  Getter get;
  Length stored;
};

class SettingTest : public testing::TestWithParam<Setting> {};

TEST_P(SettingTest, StoresWhatFitsAndTellsWhatFollows) {
  const auto& [size, set, value, after, get, stored] = GetParam();
  AttachedWindowGeometry window(PLSideRight, 0);
  (void)window.updateGeometry(size, {}, 1);
  EXPECT_EQ((window.*set)(value), after);
  EXPECT_EQ((window.*get)(), stored);
}

constexpr auto nothing = AfterSetting::nothing;
constexpr auto background = AfterSetting::updateBackground;
constexpr auto redisplay = AfterSetting::redisplay;

// The window is 54 high without its arrow: 2 times the margin 2, and 50. Defaults: radius 8, base 20.
INSTANTIATE_TEST_SUITE_P(
    Roomy, SettingTest,
    testing::Values(Setting{view, &G::setBorderWidth, 2, nothing, &G::borderWidth, 2},
                    Setting{view, &G::setBorderWidth, 5, background, &G::borderWidth, 2},
                    Setting{view, &G::setBorderWidth, 1, background, &G::borderWidth, 1},
                    Setting{view, &G::setBorderWidth, -1, background, &G::borderWidth, -1},
                    Setting{view, &G::setViewMargin, 2, nothing, &G::viewMargin, 2},
                    Setting{view, &G::setViewMargin, -3, redisplay, &G::viewMargin, 0},
                    Setting{view, &G::setCornerRadius, 8, redisplay, &G::cornerRadius, 8},
                    Setting{view, &G::setCornerRadius, 40, redisplay, &G::cornerRadius, 17},
                    Setting{view, &G::setCornerRadius, -1, redisplay, &G::cornerRadius, 0},
                    Setting{view, &G::setArrowBaseWidth, 20, redisplay, &G::arrowBaseWidth, 20},
                    Setting{view, &G::setArrowBaseWidth, 100, redisplay, &G::arrowBaseWidth, 38},
                    Setting{view, &G::setArrowBaseWidth, -5, redisplay, &G::arrowBaseWidth, -5},
                    Setting{view, &G::setArrowHeight, 16, nothing, &G::arrowHeight, 16},
                    Setting{view, &G::setArrowHeight, -4, redisplay, &G::arrowHeight, -4}));

INSTANTIATE_TEST_SUITE_P(Flags, SettingTest,
                         testing::Values(Setting{view, &G::setHasArrow, 1, nothing, &G::hasArrow, 1},
                                         Setting{view, &G::setHasArrow, 0, background, &G::hasArrow, 0},
                                         Setting{view, &G::setHasArrow, 0.5, background, &G::hasArrow, 0},
                                         Setting{view, &G::setHasArrow, 1.5, background, &G::hasArrow, 1},
                                         Setting{view, &G::setHasArrow, -2, background, &G::hasArrow, 1},
                                         Setting{view, &G::setDrawsRoundCornerBesideArrow, 1, nothing,
                                                 &G::drawsRoundCornerBesideArrow, 1},
                                         Setting{view, &G::setDrawsRoundCornerBesideArrow, 0, redisplay,
                                                 &G::drawsRoundCornerBesideArrow, 0}));

// A change of margin or radius fits the measures that depend on it.
INSTANTIATE_TEST_SUITE_P(
    Tight, SettingTest,
    testing::Values(Setting{{30, 90}, &G::setViewMargin, -3, redisplay, &G::cornerRadius, 5},
                    Setting{{90, 30}, &G::setViewMargin, 0, redisplay, &G::arrowBaseWidth, 20},
                    Setting{{10, 90}, &G::setViewMargin, 0, redisplay, &G::cornerRadius, 0},
                    Setting{{10, 90}, &G::setViewMargin, 0, redisplay, &G::arrowBaseWidth, 10},
                    Setting{{90, 10}, &G::setCornerRadius, 8, redisplay, &G::arrowBaseWidth, 14},
                    Setting{{20, 90}, &G::setArrowBaseWidth, 20, redisplay, &G::arrowBaseWidth, 8},
                    Setting{{8, 90}, &G::setArrowBaseWidth, 20, redisplay, &G::arrowBaseWidth, -4}));

TEST(AttachedWindowGeometryTest, ArrowMayTakeThePlaceOfASquareCorner) {
  AttachedWindowGeometry window(PLSideRight, 0);
  (void)window.updateGeometry(view, {}, 2);
  EXPECT_EQ(window.arrowInset(2), 36);
  ASSERT_EQ(window.setDrawsRoundCornerBesideArrow(0), redisplay);
  EXPECT_EQ(window.arrowInset(2), 20);
  ASSERT_EQ(window.setArrowBaseWidth(100), redisplay);
  EXPECT_EQ(window.arrowBaseWidth(), 46);
}

TEST(AttachedWindowGeometryTest, PenIsTwiceAsWideAsTheBorder) {
  AttachedWindowGeometry window(PLSideRight, 0);
  EXPECT_EQ(window.strokeWidth(1), 4);
  EXPECT_EQ(window.strokeWidth(2), 8);
  ASSERT_EQ(window.setBorderWidth(-1), background);
  EXPECT_EQ(window.strokeWidth(1), 0);
}

}  // namespace
}  // namespace corvane
