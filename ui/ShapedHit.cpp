#include "ui/ShapedHit.h"

#include <cmath>

namespace corvane {
namespace {

constexpr std::uint8_t kSolid = 0x80;

// True as well for a byte that is not there. The row is the point's y as it stands, deliberately not mirrored
// for views that count from below. The address is summed here and not asked of the picture, since pixels of
// any number of bits and points before the first row or column count too; in floating numbers, for which no
// coordinate is too large.
bool isSolidAt(const Bitmap& picture, Point point) {
  const double row = std::trunc(std::trunc(double{point.y}) * static_cast<double>(picture.bytesPerRow));
  const double column = std::trunc(double{point.x}) * static_cast<double>(picture.bitsPerPixel) / 8;
  const double index = std::trunc(row + column) + 3;
  if (!(index >= 0 && index < static_cast<double>(picture.bytes.size()))) return true;
  return picture.bytes[static_cast<std::size_t>(index)] >= kSolid;
}

}  // namespace

ShapedHit shapedHit(const Bitmap& picture, Point point) {
  if (!picture.hasAlpha) return {};
  if (picture.isPlanar) return {true, "planar bitmap formats not supported"};
  if (picture.samplesPerPixel == 0 || picture.bitsPerPixel / picture.samplesPerPixel != 8) {
    return {true, "Bits per Pixel/Samples per Pixel != 8: " + std::to_string(picture.bitsPerPixel) + "/" +
                      std::to_string(picture.samplesPerPixel)};
  }
  return {isSolidAt(picture, point), ""};
}

}  // namespace corvane
