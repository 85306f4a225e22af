#include "ui/Bitmap.h"

namespace corvane {

std::span<std::uint8_t> Bitmap::pixel(std::size_t x, std::size_t y) const {
  // Divided, since a product could be too large for its type.
  if (y != 0 && bytesPerRow > bytes.size() / y) return {};
  const std::size_t row = y * bytesPerRow;
  const std::size_t bytesPerPixel = bitsPerPixel / 8;
  if (x != 0 && bytesPerPixel > (bytes.size() - row) / x) return {};
  const std::size_t first = row + x * bytesPerPixel;
  return bytes.size() - first < 4 ? std::span<std::uint8_t>() : bytes.subspan(first, 4);
}

}  // namespace corvane
