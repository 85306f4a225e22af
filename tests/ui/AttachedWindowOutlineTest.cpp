#include "ui/AttachedWindowOutline.h"

#include <gmock/gmock.h>
#include <algorithm>
#include <cmath>
#include <sstream>

namespace corvane {
namespace {

using testing::HasSubstr;
using Kind = PathElement::Kind;

std::string written(Point point) {
  std::ostringstream out;
  out << point.x << ',' << point.y;
  return out.str();
}

// "M x,y", "L x,y", "A corner>end:radius" and "Z".
std::string written(const Outline& path) {
  std::ostringstream out;
  for (const auto& [kind, point, toward, radius] : path) {
    switch (kind) {
      case Kind::move:
        out << "M " << written(point);
        break;
      case Kind::line:
        out << " L " << written(point);
        break;
      case Kind::arc:
        out << " A " << written(point) << '>' << written(toward) << ':' << radius;
        break;
      case Kind::close:
        out << " Z";
        break;
    }
  }
  return out.str();
}

AttachedWindowGeometry makeWindow(PLAttachedWindowSide side, Length scale = 1) {
  AttachedWindowGeometry window(side, 0);
  (void)window.updateGeometry({100, 50}, {}, scale);
  return window;
}

TEST(OutlineTest, RunsClockwiseFromTheTopLeft) {
  EXPECT_EQ(written(backgroundPath(makeWindow(PLSideBottom), 1)),
            "M 8,54 L 42,54 L 52,70 L 62,54 L 96,54 A 104,54>104,46:8 L 104,8 A 104,0>96,0:8 "
            "L 8,0 A 0,0>0,8:8 L 0,46 A 0,54>8,54:8 Z");
}

TEST(OutlineTest, ScalesMeasuresOnceAndEdgesTwice) {
  EXPECT_EQ(written(backgroundPath(makeWindow(PLSideRightRising, 2), 2)),
            "M 80,116 L 264,116 A 280,116>280,100:16 L 280,16 A 280,0>264,0:16 L 80,0 A 64,0>64,16:16 "
            "L 32,36 L 64,56 L 64,100 A 64,116>80,116:16 Z");
}

TEST(OutlineTest, StartsAtTheVeryCornerBesideAnArrow) {
  auto window = makeWindow(PLSideBottomRightward);
  (void)window.setDrawsRoundCornerBesideArrow(0);
  EXPECT_EQ(written(backgroundPath(window, 1)),
            "M 0,54 L 10,70 L 20,54 L 96,54 A 104,54>104,46:8 L 104,8 A 104,0>96,0:8 "
            "L 8,0 A 0,0>0,8:8 L 0,54 Z");
}

TEST(OutlineTest, IsAPlainRoundedRectangleWithoutItsArrow) {
  auto window = makeWindow(PLSideRightFalling);
  (void)window.setHasArrow(0);
  EXPECT_EQ(written(backgroundPath(window, 1)),
            "M 24,54 L 112,54 A 120,54>120,46:8 L 120,8 A 120,0>112,0:8 "
            "L 24,0 A 16,0>16,8:8 L 16,26 L 16,46 A 16,54>24,54:8 Z");
}

TEST(OutlineTest, HasNoArcsAtRadiusZero) {
  auto window = makeWindow(PLSideTop);
  (void)window.setCornerRadius(0);
  EXPECT_EQ(written(backgroundPath(window, 1)),
            "M 0,70 L 104,70 L 104,16 L 62,16 L 52,0 L 42,16 L 0,16 L 0,70 Z");
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
  }
}

std::vector<Point> vertices(const Outline& path) {
  std::vector<Point> points;
  for (const auto& element : path) {
    if (element.kind != Kind::close) points.push_back(element.point);
    if (element.kind == Kind::arc) points.push_back(element.toward);
  }
  return points;
}

// Twice the enclosed area; negative when the points run clockwise.
Length signedArea(const std::vector<Point>& points) {
  Length area = 0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const Point a = points[i];
    const Point b = points[(i + 1) % points.size()];
    area += a.x * b.y - b.x * a.y;
  }
  return area;
}

// What must hold for every window at scale 1, beside the anchor (500, 400) without a distance.
void expectSound(const AttachedWindowGeometry& window, const Rect& frame) {
  const auto path = backgroundPath(window, 1);
  const auto points = vertices(path);
  ASSERT_EQ(path.front().kind, Kind::move);
  EXPECT_EQ(path.back().kind, Kind::close);
  EXPECT_EQ(std::count_if(path.begin(), path.end(), [](const auto& e) { return e.kind == Kind::close; }), 1);
  const Rect view = window.viewFrame();
  const Length margin = window.viewMargin() + 1e-4;
  auto tips = points;  // what lies outside the body
  std::erase_if(tips, [&](Point point) {
    return point.x > view.x - margin && point.x < view.x + view.width + margin && point.y > view.y - margin &&
           point.y < view.y + view.height + margin;
  });
  ASSERT_EQ(tips.size(), window.hasArrow() == 1 ? 1U : 0U);
  for (const Point tip : tips) EXPECT_LT(std::hypot(frame.x + tip.x - 500, frame.y + tip.y - 400), 1e-4);
  EXPECT_LT(signedArea(points), 0);
  for (const Point point : points) {
    EXPECT_TRUE(point.x > -1e-4 && point.x < frame.width + 1e-4) << written(path);
    EXPECT_TRUE(point.y > -1e-4 && point.y < frame.height + 1e-4) << written(path);
  }
  for (const auto& element : path) {
    if (element.kind != Kind::arc) continue;
    EXPECT_NEAR(std::hypot(element.toward.x - element.point.x, element.toward.y - element.point.y),
                element.radius, 1e-4);
  }
}

TEST(OutlineTest, IsSoundForEveryWindow) {
  for (std::uint32_t side = 0; side < 12; ++side) {
    for (const Size view : {Size{100, 50}, Size{30, 30}, Size{57.5, 241.25}, Size{300, 80}}) {
      for (int flags = 0; flags < 4; ++flags) {
        for (const Length radius : {0, 3, 8, 50}) {
          for (const Length margin : {0, 2, 9}) {
            AttachedWindowGeometry window(static_cast<PLAttachedWindowSide>(side), 0);
            (void)window.updateGeometry(view, {500, 400}, 1);
            (void)window.setHasArrow(flags & 1);
            (void)window.setDrawsRoundCornerBesideArrow(flags >> 1);
            (void)window.setViewMargin(margin);
            (void)window.setCornerRadius(radius);
            SCOPED_TRACE(testing::Message()
                         << "side " << side << " view " << view.width << 'x' << view.height << " flags "
                         << flags << " radius " << radius << " margin " << margin);
            expectSound(window, window.updateGeometry(view, {500, 400}, 1));
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace corvane
