#include "ui/Darkening.h"

#include <algorithm>

namespace corvane {
namespace {

// Four bytes each, and fewer than 2^31 bytes together: what systems count in an int.
constexpr std::size_t kMostPixels = (std::size_t{1} << 31) / 4 - 1;

// 2^31 and beyond is cut there. The comparison also sorts out what is no number.
std::size_t wholePixels(Length length) {
  return length >= 1 ? static_cast<std::size_t>(std::min(double{length}, 2147483648.0)) : 0;
}

// 256 and not 255 is meant: every colour loses something, white too.
int loss(double component) {
  const double part = component > 0 ? std::min(component, 1.0) : 0;
  return static_cast<int>(256 - part * 255);
}

std::uint8_t lowered(std::uint8_t value, int by) {
  return static_cast<std::uint8_t>(std::max(value - by, 0));
}

}  // namespace

std::optional<PixelSize> darkenedPixels(Size size) {
  const PixelSize pixels{wholePixels(size.width), wholePixels(size.height)};
  if (pixels.width != 0 && pixels.height > kMostPixels / pixels.width) return std::nullopt;
  return pixels;
}

void darken(const Bitmap& source, const Bitmap& target, PixelSize size, const DarkeningColour& colour) {
  if (target.bytesPerRow == 0 || target.bitsPerPixel < 8) return;  // its pixels would have no end
  const int red = loss(colour.red);
  const int green = loss(colour.green);
  const int blue = loss(colour.blue);
  for (std::size_t y = 0; y < size.height && !target.pixel(0, y).empty(); ++y) {
    for (std::size_t x = 0; x < size.width; ++x) {
      const auto to = target.pixel(x, y);
      if (to.empty()) break;
      const auto from = source.pixel(x, y);
      if (from.empty()) continue;
      to[0] = lowered(from[0], red);
      to[1] = lowered(from[1], green);
      to[2] = lowered(from[2], blue);
      to[3] = from[3];
    }
  }
}

}  // namespace corvane
