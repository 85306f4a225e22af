// On which side of a point an attached window stands, and which side suits it best.
// Pure functions of plain values; thread: any.
#pragma once

#include <cstdint>

#include "ui/Geometry.h"

namespace corvane {

/// Rising and rightward windows extend upward and to the right from the point's level, falling and leftward
/// ones the other way; the rest are centred on it.
enum PLAttachedWindowSide : std::uint32_t {
  PLSideLeft = 0,
  PLSideBottom = 1,
  PLSideRight = 2,
  PLSideTop = 3,
  PLSideLeftRising = 4,
  PLSideLeftFalling = 5,
  PLSideRightRising = 6,
  PLSideRightFalling = 7,
  PLSideTopLeftward = 8,
  PLSideTopRightward = 9,
  PLSideBottomLeftward = 10,
  PLSideBottomRightward = 11,
  PLSideAutomatic = 12
};

enum class SideFamily { left, bottom, right, top };

/// How the window lies along its edge: centred on the point, or extending from it to higher (forward) or to
/// lower (backward) coordinates.
enum class SideExtent { centred, forward, backward };

struct SideTraits {
  SideFamily family = SideFamily::left;
  SideExtent extent = SideExtent::centred;
  bool operator==(const SideTraits&) const = default;
};

/// False for the automatic side and for values that name no side.
[[nodiscard]] bool isResolved(PLAttachedWindowSide side);

/// The traits of a resolved side; those of PLSideLeft for any other value.
[[nodiscard]] SideTraits traitsOf(PLAttachedWindowSide side);

/// A window looking for its side. Lengths are in points of the screen.
struct SideSearch {
  Rect screen;            ///< the area that windows may cover
  Rect bounds;            ///< what the window should not cross: its parent's frame, or `screen`
  Point anchor;           ///< the point that the window attaches to
  Size body;              ///< the window without its arrow
  Length arrowReach = 0;  ///< from the anchor to the body
  Length arrowInset = 0;  ///< from the window's corner to the centre line of an off-centre arrow
};

/// Below the anchor if it fits there, else right, left or above it; below when nothing fits. Off-centre when
/// the centred window would cross the bounds and the screen has room on the other side.
[[nodiscard]] PLAttachedWindowSide bestSideForAutomaticPosition(const SideSearch& search);

}  // namespace corvane
