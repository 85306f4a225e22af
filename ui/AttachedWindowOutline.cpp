#include "ui/AttachedWindowOutline.h"

#include <utility>

namespace corvane {
namespace {

// An edge of the body as the outline runs along it, clockwise. The index of the edge is also that of the
// corner where it starts: top left, top right, bottom right, bottom left.
struct Edge {
  SideFamily arrowOf;  // the windows that have their arrow here
  SideExtent atStart;  // and among those, the ones whose arrow touches the corner where the edge starts
  Length dx;
  Length dy;
};

constexpr Edge edges[] = {
    {SideFamily::bottom, SideExtent::forward, 1, 0},
    {SideFamily::left, SideExtent::backward, 0, -1},
    {SideFamily::top, SideExtent::backward, -1, 0},
    {SideFamily::right, SideExtent::forward, 0, 1},
};

Point moved(Point point, const Edge& edge, Length distance) {
  return {point.x + edge.dx * distance, point.y + edge.dy * distance};
}

Point middle(Point a, Point b) { return {(a.x + b.x) / 2, (a.y + b.y) / 2}; }

const Edge& arrowEdge(PLAttachedWindowSide side) {
  const auto* edge = edges;
  while (edge->arrowOf != traitsOf(side).family) ++edge;
  return *edge;
}

class OutlineWalk {
 public:
  OutlineWalk(const AttachedWindowGeometry& window, Length scale)
      : window_(window),
        scale_(scale),
        traits_(traitsOf(window.side())),
        radius_(window.cornerRadius() * scale),
        base_(window.arrowBaseWidth() * scale) {
    const Rect view = window.viewFrame();
    const Length margin = window.viewMargin() * scale;
    const Length left = (view.x - margin) * scale;
    const Length bottom = (view.y - margin) * scale;
    const Length right = (view.x + view.width + margin) * scale;
    const Length top = (view.y + view.height + margin) * scale;
    corners_[0] = {left, top};
    corners_[1] = {right, top};
    corners_[2] = {right, bottom};
    corners_[3] = {left, bottom};
  }

  Outline walk() {
    const Length start = isRounded(0) ? radius_ : 0;
    path_.push_back({PathElement::Kind::move, moved(corners_[0], edges[0], start), {}, 0});
    for (int edge = 0; edge < 4; ++edge) walkEdge(edge);
    path_.push_back({});
    return std::move(path_);
  }

 private:
  [[nodiscard]] bool arrowTouches(int corner) const {
    const Edge& after = edges[corner];
    const Edge& before = edges[(corner + 3) % 4];
    if (traits_.extent == SideExtent::centred) return false;
    if (traits_.family == after.arrowOf) return traits_.extent == after.atStart;
    return traits_.family == before.arrowOf && traits_.extent != before.atStart;
  }

  [[nodiscard]] bool isRounded(int corner) const {
    return radius_ > 0 && (window_.drawsRoundCornerBesideArrow() != 0 || !arrowTouches(corner));
  }

  void walkEdge(int index) {
    const Edge& edge = edges[index];
    const int next = (index + 1) % 4;
    const Point end = moved(corners_[next], edge, isRounded(next) ? -radius_ : 0);
    if (edge.arrowOf == traits_.family) {
      const Point centre = middle(corners_[index], corners_[next]);
      if (traits_.extent == SideExtent::centred) {
        lineTo(moved(centre, edge, -base_ / 2));
      } else if (traits_.extent != edge.atStart) {
        lineTo(moved(end, edge, -base_));
      }
      appendArrowToPath(path_, arrivedAt(), window_, scale_);
    }
    lineTo(end);
    if (!isRounded(next)) return;
    path_.push_back(
        {PathElement::Kind::arc, corners_[next], moved(corners_[next], edges[next], radius_), radius_});
  }

  [[nodiscard]] Point arrivedAt() const {
    return path_.back().kind == PathElement::Kind::arc ? path_.back().toward : path_.back().point;
  }

  void lineTo(Point point) { path_.push_back({PathElement::Kind::line, point, {}, 0}); }

  const AttachedWindowGeometry& window_;
  Length scale_;
  SideTraits traits_;
  Length radius_;
  Length base_;
  Point corners_[4];
  Outline path_;
};

}  // namespace

Outline backgroundPath(const AttachedWindowGeometry& window, Length scale) {
  return OutlineWalk(window, scale).walk();
}

void appendArrowToPath(Outline& path, Point current, const AttachedWindowGeometry& window, Length scale) {
  if (window.hasArrow() == 0) return;
  const Edge& edge = arrowEdge(window.side());
  const Length base = window.arrowBaseWidth() * scale;
  const Length height = window.arrowHeight() * scale;
  const Point centre = moved(current, edge, base / 2);
  const Point tip{centre.x - edge.dy * height, centre.y + edge.dx * height};  // outward is to the left
  path.push_back({PathElement::Kind::line, tip, {}, 0});
  path.push_back({PathElement::Kind::line, moved(current, edge, base), {}, 0});
}

}  // namespace corvane
