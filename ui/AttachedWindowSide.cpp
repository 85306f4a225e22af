#include "ui/AttachedWindowSide.h"

#include <algorithm>
#include <iterator>

namespace corvane {
namespace {

constexpr SideTraits sides[] = {
    {SideFamily::left, SideExtent::centred},    {SideFamily::bottom, SideExtent::centred},
    {SideFamily::right, SideExtent::centred},   {SideFamily::top, SideExtent::centred},
    {SideFamily::left, SideExtent::forward},    {SideFamily::left, SideExtent::backward},
    {SideFamily::right, SideExtent::forward},   {SideFamily::right, SideExtent::backward},
    {SideFamily::top, SideExtent::backward},    {SideFamily::top, SideExtent::forward},
    {SideFamily::bottom, SideExtent::backward}, {SideFamily::bottom, SideExtent::forward},
};

PLAttachedWindowSide sideOf(SideTraits traits) {
  return static_cast<PLAttachedWindowSide>(std::find(std::begin(sides), std::end(sides), traits) - sides);
}

// A window that would just touch the end of the screen fits below and to the left, not to the right or above.
SideFamily bestFamily(const SideSearch& search) {
  const auto& [screen, bounds, anchor, body, reach, inset] = search;
  if (screen.y <= anchor.y - body.height - reach) return SideFamily::bottom;
  if (anchor.x + body.width + reach < screen.x + screen.width) return SideFamily::right;
  if (screen.x <= anchor.x - body.width - reach) return SideFamily::left;
  return screen.y + screen.height > anchor.y + body.height + reach ? SideFamily::top : SideFamily::bottom;
}

// One axis of the search: where the window lies along its edge.
struct Axis {
  Length boundsLow;
  Length boundsHigh;
  Length screenLow;
  Length screenHigh;
  Length anchor;
  Length length;
};

SideExtent bestExtent(const Axis& axis, Length inset) {
  const Length half = axis.length / 2;
  if (axis.boundsLow > axis.anchor - half) {
    const bool fits = axis.screenHigh > axis.anchor + axis.length - inset;
    return fits ? SideExtent::forward : SideExtent::centred;
  }
  const bool crosses = axis.anchor + half >= axis.boundsHigh;
  const bool fits = axis.anchor - axis.length + inset >= axis.screenLow;
  return crosses && fits ? SideExtent::backward : SideExtent::centred;
}

}  // namespace

bool isResolved(PLAttachedWindowSide side) { return side < std::size(sides); }

SideTraits traitsOf(PLAttachedWindowSide side) { return isResolved(side) ? sides[side] : SideTraits{}; }

PLAttachedWindowSide bestSideForAutomaticPosition(const SideSearch& search) {
  const auto& [screen, bounds, anchor, body, reach, inset] = search;
  const SideFamily family = bestFamily(search);
  const bool alongX = family == SideFamily::bottom || family == SideFamily::top;
  const Axis axis =
      alongX
          ? Axis{bounds.x, bounds.x + bounds.width, screen.x, screen.x + screen.width, anchor.x, body.width}
          : Axis{bounds.y,   bounds.y + bounds.height, screen.y, screen.y + screen.height, anchor.y,
                 body.height};
  return sideOf({family, bestExtent(axis, inset)});
}

}  // namespace corvane
