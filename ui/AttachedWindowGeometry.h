// The measures of an attached window: its properties with the limits that hold between them, and where it and
// its view lie. It holds one view beside a point; an arrow on the edge that faces the point may aim at it.
//
// Owner: the window. Thread: main. Lengths are points. `scale` is the screen's user-space scale factor: the
// properties are stored unscaled and multiplied at each use; the anchor and the distance never are.
#pragma once

#include "ui/AttachedWindowSide.h"
#include "ui/Geometry.h"

namespace corvane {

/// What the owner of the window must do after it has set a property.
enum class AfterSetting { nothing, updateBackground, redisplay };

/// Where a window that looks for its side may lie.
struct Surroundings {
  Rect screen;  ///< the area that windows may cover
  Rect bounds;  ///< what the window should not cross: its parent's frame, or `screen`
};

class AttachedWindowGeometry {
 public:
  AttachedWindowGeometry() = default;
  AttachedWindowGeometry(PLAttachedWindowSide side, Length distance) : side_(side), distance_(distance) {}

  [[nodiscard]] PLAttachedWindowSide side() const { return side_; }
  [[nodiscard]] Length borderWidth() const { return borderWidth_; }
  [[nodiscard]] Length viewMargin() const { return viewMargin_; }
  [[nodiscard]] Length arrowBaseWidth() const { return arrowBaseWidth_; }
  [[nodiscard]] Length arrowHeight() const { return arrowHeight_; }
  [[nodiscard]] Length cornerRadius() const { return cornerRadius_; }
  /// The view's place in the window, as of the last updateGeometry; all zero before.
  [[nodiscard]] Rect viewFrame() const { return viewFrame_; }

  /// The flags cross as numbers: 0 and 1 when read; when set, what is left without the fraction, if not 0, is
  /// on.
  [[nodiscard]] Length hasArrow() const { return hasArrow_ ? 1 : 0; }
  [[nodiscard]] Length drawsRoundCornerBesideArrow() const { return drawsRoundCornerBesideArrow_ ? 1 : 0; }

  /// At most the view's margin.
  [[nodiscard]] AfterSetting setBorderWidth(Length width);
  /// At least 0. Fits the corners and the arrow to it.
  [[nodiscard]] AfterSetting setViewMargin(Length margin);
  /// At least 0, and at most what the arrow's base leaves of the window's shorter side. Fits the arrow to it.
  [[nodiscard]] AfterSetting setCornerRadius(Length radius);
  /// At most what the corners leave of the window's shorter side, which may be less than nothing.
  [[nodiscard]] AfterSetting setArrowBaseWidth(Length width);
  [[nodiscard]] AfterSetting setArrowHeight(Length height);
  /// The arrow's space stays part of the window when it is switched off.
  [[nodiscard]] AfterSetting setHasArrow(Length flag);
  /// Whether the corner that an off-centre arrow touches is rounded too.
  [[nodiscard]] AfterSetting setDrawsRoundCornerBesideArrow(Length flag);

  /// A resolved side. Takes effect with the next updateGeometry.
  void setSide(PLAttachedWindowSide side) { side_ = side; }

  /// The side that suits a window with a view of that size best.
  [[nodiscard]] PLAttachedWindowSide bestSideForAutomaticPosition(const Surroundings& around, Size view,
                                                                  Point anchor, Length scale) const;

  /// From the window's corner to the centre line of an off-centre arrow.
  [[nodiscard]] Length arrowInset(Length scale) const;

  /// Width of the pen that draws the border: twice the border's, as only its inner half shows. 0 for none.
  [[nodiscard]] Length strokeWidth(Length scale) const;

  /// Places a view of that size in a window beside `anchor`, a point of the screen; answers the window's
  /// frame.
  Rect updateGeometry(Size view, Point anchor, Length scale);

 private:
  [[nodiscard]] Length shorterSide() const;

  Length borderWidth_ = 2;
  Length viewMargin_ = 2;
  Length arrowBaseWidth_ = 20;
  Length arrowHeight_ = 16;
  bool hasArrow_ = true;
  Length cornerRadius_ = 8;
  bool drawsRoundCornerBesideArrow_ = true;
  PLAttachedWindowSide side_ = PLSideAutomatic;
  Length distance_ = 0;
  Rect viewFrame_;
};

}  // namespace corvane
