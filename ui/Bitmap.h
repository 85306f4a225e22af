// The bytes of a picture and how its owner says that they are to be read. The numbers are claims, which
// may lead outside the bytes: `pixel` follows them no further, and whoever sums up addresses itself must not.
// Borrows the bytes. Thread: that of their owner.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace corvane {

struct Bitmap {
  std::span<std::uint8_t> bytes;  // of planar pictures only those of the first plane
  std::size_t bytesPerRow = 0;
  std::size_t bitsPerPixel = 0;
  std::size_t samplesPerPixel = 0;
  bool hasAlpha = false;
  bool isPlanar = false;

  /// The first four bytes of the pixel in column `x` of row `y`; none where these are not all there.
  /// A column beyond the end of its row goes on in the next row.
  [[nodiscard]] std::span<std::uint8_t> pixel(std::size_t x, std::size_t y) const;
};

}  // namespace corvane
