// Whether a click meets something in the picture of a button whose shape is that of its picture.
// Pure function; any thread.
#pragma once

#include <string>

#include "ui/Bitmap.h"
#include "ui/Geometry.h"

namespace corvane {

struct ShapedHit {
  bool isHit = true;
  std::string problem;  // why the picture was no help, for the log; mostly empty
};

/// Looks at the alpha of the pixel at `point`, which is in the button's coordinates: one pixel per point,
/// rows counted by y, alpha taken as the fourth byte. From 128 on it is a hit. A picture that cannot answer,
/// and one that ends before that byte, never blocks a click.
[[nodiscard]] ShapedHit shapedHit(const Bitmap& picture, Point point);

}  // namespace corvane
