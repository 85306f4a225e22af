// Darkening of a picture by a colour, byte by byte. Pure functions; any thread.
#pragma once

#include <optional>

#include "ui/Bitmap.h"
#include "ui/Geometry.h"

namespace corvane {

struct PixelSize {
  std::size_t width = 0;
  std::size_t height = 0;
  bool operator==(const PixelSize&) const = default;
};

/// How many pixels a picture of `size` points gets: whole ones, and none for what is no length. Nothing when
/// they would take 2 gigabytes or more.
[[nodiscard]] std::optional<PixelSize> darkenedPixels(Size size);

/// Components from 0 to 1; what lies outside is taken for the nearer end.
struct DarkeningColour {
  double red = 0;
  double green = 0;
  double blue = 0;
};

/// Fills the first `size` pixels of `target` with those of `source`, each colour lowered the more the less of
/// it `colour` has; even white lowers it by one step. The first four bytes of each pixel are taken for red,
/// green, blue and alpha, whatever the samples are. A pixel that `source` does not have stays as it was.
/// The two must not overlap.
void darken(const Bitmap& source, const Bitmap& target, PixelSize size, const DarkeningColour& colour);

}  // namespace corvane
