#include "ui/AttachedWindowGeometry.h"

#include <algorithm>
#include <cmath>

namespace corvane {
namespace {

bool setFlag(bool& flag, Length value) {
  if (value == static_cast<Length>(flag)) return false;
  flag = std::trunc(value) != 0;
  return true;
}

// With the limit first, a value that is no number becomes the limit.
Length atMost(Length limit, Length value) { return std::min(limit, value); }
Length atLeast(Length limit, Length value) { return std::max(limit, value); }

// Across the edge: the window keeps its distance from the anchor.
Length across(bool before, Length anchor, Length length, Length distance) {
  return before ? anchor - length - distance : anchor + distance;
}

// Along the edge: the arrow's centre line meets the anchor.
Length along(SideExtent extent, Length anchor, Length length, Length inset) {
  switch (extent) {
    case SideExtent::forward:
      return anchor - inset;
    case SideExtent::backward:
      return anchor - (length - inset);
    case SideExtent::centred:
      break;
  }
  return anchor - length / 2;
}

}  // namespace

AfterSetting AttachedWindowGeometry::setBorderWidth(Length width) {
  if (width == borderWidth_) return AfterSetting::nothing;
  borderWidth_ = atMost(viewMargin_, width);
  return AfterSetting::updateBackground;
}

AfterSetting AttachedWindowGeometry::setViewMargin(Length margin) {
  if (margin == viewMargin_) return AfterSetting::nothing;
  viewMargin_ = atLeast(0, margin);
  return setCornerRadius(cornerRadius_);
}

AfterSetting AttachedWindowGeometry::setCornerRadius(Length radius) {
  cornerRadius_ = atLeast(0, atMost((shorterSide() - arrowBaseWidth_) / 2, radius));
  return setArrowBaseWidth(arrowBaseWidth_);
}

AfterSetting AttachedWindowGeometry::setArrowBaseWidth(Length width) {
  const Length corners = drawsRoundCornerBesideArrow_ ? 2 * cornerRadius_ : cornerRadius_;
  arrowBaseWidth_ = atMost(shorterSide() - corners, width);
  return AfterSetting::redisplay;
}

AfterSetting AttachedWindowGeometry::setArrowHeight(Length height) {
  if (height == arrowHeight_) return AfterSetting::nothing;
  arrowHeight_ = height;
  return AfterSetting::redisplay;
}

AfterSetting AttachedWindowGeometry::setHasArrow(Length flag) {
  return setFlag(hasArrow_, flag) ? AfterSetting::updateBackground : AfterSetting::nothing;
}

AfterSetting AttachedWindowGeometry::setDrawsRoundCornerBesideArrow(Length flag) {
  return setFlag(drawsRoundCornerBesideArrow_, flag) ? AfterSetting::redisplay : AfterSetting::nothing;
}

Length AttachedWindowGeometry::shorterSide() const {
  return 2 * viewMargin_ + std::min(viewFrame_.width, viewFrame_.height);
}

PLAttachedWindowSide AttachedWindowGeometry::bestSideForAutomaticPosition(const Surroundings& around,
                                                                          Size view, Point anchor,
                                                                          Length scale) const {
  const Length margins = 2 * viewMargin_ * scale;
  const Size body{view.width + margins, view.height + margins};
  const Length reach = arrowHeight_ * scale + distance_;
  return corvane::bestSideForAutomaticPosition(
      {around.screen, around.bounds, anchor, body, reach, arrowInset(scale)});
}

Length AttachedWindowGeometry::arrowInset(Length scale) const {
  return (arrowBaseWidth_ / 2 + (drawsRoundCornerBesideArrow_ ? cornerRadius_ : 0)) * scale;
}

Length AttachedWindowGeometry::strokeWidth(Length scale) const {
  return atLeast(0, borderWidth_ * 2 * scale);
}

Rect AttachedWindowGeometry::updateGeometry(Size view, Point anchor, Length scale) {
  const Length margin = viewMargin_ * scale;
  const Length arrow = arrowHeight_ * scale;
  const auto [family, extent] = traitsOf(side_);
  const bool beside = family == SideFamily::left || family == SideFamily::right;

  viewFrame_ = {margin, margin, view.width, view.height};
  if (family == SideFamily::right) viewFrame_.x += arrow;
  if (family == SideFamily::top) viewFrame_.y += arrow;

  Rect frame{0, 0, view.width + 2 * margin, view.height + 2 * margin};
  if (beside) {
    frame.width += arrow;
    frame.x = across(family == SideFamily::left, anchor.x, frame.width, distance_);
    frame.y = along(extent, anchor.y, frame.height, arrowInset(scale));
  } else {
    frame.height += arrow;
    frame.x = along(extent, anchor.x, frame.width, arrowInset(scale));
    frame.y = across(family == SideFamily::bottom, anchor.y, frame.height, distance_);
  }
  return frame;
}

}  // namespace corvane
