// The outline of an attached window's body and arrow as a list of path elements, in window coordinates.
// Pure functions of plain values; thread: any.
#pragma once

#include <vector>

#include "ui/AttachedWindowGeometry.h"

namespace corvane {

struct PathElement {
  enum class Kind { move, line, arc, close };
  Kind kind = Kind::close;
  Point point;        ///< end of a move or line; the corner that an arc rounds
  Point toward;       ///< arcs only: the point after the corner; this arc ends there
  Length radius = 0;  ///< arcs only
  bool operator==(const PathElement&) const = default;
};

using Outline = std::vector<PathElement>;

/// The whole outline, clockwise and closed, beginning on the top edge. Without its arrow the edge is
/// straight.
[[nodiscard]] Outline backgroundPath(const AttachedWindowGeometry& window, Length scale);

/// Adds the arrow, if the window has one, to a path that has come to `current`: a line to its tip and a line
/// to the end of its base.
void appendArrowToPath(Outline& path, Point current, const AttachedWindowGeometry& window, Length scale);

}  // namespace corvane
