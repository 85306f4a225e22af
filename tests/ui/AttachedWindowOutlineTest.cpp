#include "ui/AttachedWindowOutline.h"

#include <gmock/gmock.h>
#include <algorithm>
#include <sstream>

namespace corvane {
namespace {

using testing::HasSubstr;
using Kind = PathElement::Kind;

// "M x,y", "L x,y", "A corner>end:radius" and "Z".
std::string written(const Outline& path) {
  std::ostringstream out;
  for (const auto& [kind, point, toward, radius] : path) {
    if (kind == Kind::close) return out.str() + " Z";
    out << (kind == Kind::move ? "M " : kind == Kind::line ? " L " : " A ") << point.x << ',' << point.y;
    if (kind == Kind::arc) out << '>' << toward.x << ',' << toward.y << ':' << radius;
  }
  return out.str();
}

AttachedWindowGeometry makeWindow(PLAttachedWindowSide side, Length scale = 1) {
  AttachedWindowGeometry window(side, 0);
  (void)window.updateGeometry({100, 50}, {}, scale);
  return window;
}

// Clockwise from the top left. Measures are scaled once, edges twice.
TEST(OutlineTest, RunsAroundTheBodyAndItsArrow) {
  const struct {
    PLAttachedWindowSide side;
    Length scale, radius, hasArrow, isRoundBesideArrow;
    const char* path;
  } rows[] = {{PLSideBottom, 1, 8, 1, 1,
               "M 8,54 L 42,54 L 52,70 L 62,54 L 96,54 A 104,54>104,46:8 L 104,8 A 104,0>96,0:8 "
               "L 8,0 A 0,0>0,8:8 L 0,46 A 0,54>8,54:8 Z"},
              {PLSideRightRising, 2, 8, 1, 1,
               "M 80,116 L 264,116 A 280,116>280,100:16 L 280,16 A 280,0>264,0:16 L 80,0 A 64,0>64,16:16 "
               "L 32,36 L 64,56 L 64,100 A 64,116>80,116:16 Z"},
              {PLSideBottomRightward, 1, 8, 1, 0,
               "M 0,54 L 10,70 L 20,54 L 96,54 A 104,54>104,46:8 L 104,8 A 104,0>96,0:8 "
               "L 8,0 A 0,0>0,8:8 L 0,54 Z"},
              {PLSideRightFalling, 1, 8, 0, 1,
               "M 24,54 L 112,54 A 120,54>120,46:8 L 120,8 A 120,0>112,0:8 "
               "L 24,0 A 16,0>16,8:8 L 16,26 L 16,46 A 16,54>24,54:8 Z"},
              {PLSideTop, 1, 0, 1, 1, "M 0,70 L 104,70 L 104,16 L 62,16 L 52,0 L 42,16 L 0,16 L 0,70 Z"}};
  for (const auto& row : rows) {
    auto window = makeWindow(row.side, row.scale);
    (void)window.setCornerRadius(row.radius);
    (void)window.setHasArrow(row.hasArrow);
    (void)window.setDrawsRoundCornerBesideArrow(row.isRoundBesideArrow);
    EXPECT_EQ(written(backgroundPath(window, row.scale)), row.path);
  }
}

// From where the arrow starts to its tip and the end of its base.
TEST(OutlineTest, HasItsArrowOnTheEdgeThatFacesThePoint) {
  const struct {
    PLAttachedWindowSide side;
    std::string lines, linesAtScale2, corner;  // the corner that it touches
  } rows[] = {
      {PLSideLeft, "L 104,37 L 120,27 L 104,17 L", "L 216,78 L 248,58 L 216,38 L", ""},
      {PLSideBottom, "L 42,54 L 52,70 L 62,54 L", "L 88,116 L 108,148 L 128,116 L", ""},
      {PLSideRight, "L 16,17 L 0,27 L 16,37 L", "L 64,38 L 32,58 L 64,78 L", ""},
      {PLSideTop, "L 62,16 L 52,0 L 42,16 L", "L 128,64 L 108,32 L 88,64 L", ""},
      {PLSideLeftRising, "L 104,28 L 120,18 L 104,8 L", "L 216,56 L 248,36 L 216,16 L", "104,0"},
      {PLSideLeftFalling, ">104,46:8 L 120,36 L 104,26 L", ">216,100:16 L 248,80 L 216,60 L", "104,54"},
      {PLSideRightRising, ">16,8:8 L 0,18 L 16,28 L", ">64,16:16 L 32,36 L 64,56 L", "16,0"},
      {PLSideRightFalling, "L 16,26 L 0,36 L 16,46 L", "L 64,60 L 32,80 L 64,100 L", "16,54"},
      {PLSideTopLeftward, ">96,16:8 L 86,0 L 76,16 L", ">200,64:16 L 180,32 L 160,64 L", "104,16"},
      {PLSideTopRightward, "L 28,16 L 18,0 L 8,16 L", "L 56,64 L 36,32 L 16,64 L", "0,16"},
      {PLSideBottomLeftward, "L 76,54 L 86,70 L 96,54 L", "L 160,116 L 180,148 L 200,116 L", "104,54"},
      {PLSideBottomRightward, "M 8,54 L 18,70 L 28,54 L", "M 16,116 L 36,148 L 56,116 L", "0,54"}};
  for (const auto& row : rows) {
    auto window = makeWindow(row.side);
    EXPECT_THAT(written(backgroundPath(window, 1)), HasSubstr(row.lines));
    EXPECT_THAT(written(backgroundPath(makeWindow(row.side, 2), 2)), HasSubstr(row.linesAtScale2));
    (void)window.setDrawsRoundCornerBesideArrow(0);
    const auto path = backgroundPath(window, 1);
    const bool isCentred = row.corner.empty();
    EXPECT_EQ(std::ranges::count(path, Kind::arc, &PathElement::kind), isCentred ? 4 : 3);
    EXPECT_THAT(written(path), HasSubstr(isCentred ? row.lines : " " + row.corner + " "));
    (void)window.setHasArrow(0);
    EXPECT_EQ(backgroundPath(window, 1).size(), path.size() - 2);
  }
}

}  // namespace
}  // namespace corvane
