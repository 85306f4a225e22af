#include "tools/ditto/Segments.h"

#include <array>
#include <cstdint>

namespace corvane::ditto {
namespace {

constexpr std::size_t kPage = 1024;   // judged as one
constexpr std::size_t kSample = 256;  // of a page, from its start

// A segment between others that is worth its own stream. A stream knows nothing of what is before it, but
// behind so much of another kind nothing would be within its reach anyway.
constexpr std::size_t kShortest = 32768;

// In text a few bytes are frequent, so that two of them are often equal: one pair in twenty or so. In base64
// of a picture it is one in 64, in the picture itself one in 256.
constexpr std::uint64_t kRarelyEqual = 45;

Effort effortFor(Bytes page) {
  const Bytes sample = page.first(std::min(page.size(), kSample));
  // Two counters take turns: one alone would wait for itself at each repeated byte. None exceeds 128.
  std::array<std::array<std::uint8_t, 256>, 2> counts{};
  for (std::size_t i = 0; i < sample.size(); ++i) ++counts[i % 2][sample[i]];
  std::uint32_t squares = 0;
  for (std::size_t value = 0; value < 256; ++value) {
    const std::uint32_t count = std::uint32_t{counts[0][value]} + counts[1][value];
    squares += count * count;
  }
  const std::uint64_t equalPairs = squares - sample.size();
  const std::uint64_t pairs = std::uint64_t{sample.size()} * (sample.size() - 1);
  return equalPairs * kRarelyEqual < pairs ? Effort::quick : Effort::thorough;
}

// The pages from the first on that are judged alike.
Segment run(Bytes bytes) {
  Segment found{std::min(bytes.size(), kPage), effortFor(bytes.first(std::min(bytes.size(), kPage)))};
  while (found.size < bytes.size()) {
    const std::size_t size = std::min(bytes.size() - found.size, kPage);
    if (effortFor(bytes.subspan(found.size, size)) != found.effort) break;
    found.size += size;
  }
  return found;
}

}  // namespace

Segment firstSegment(Bytes bytes) {
  Segment first = run(bytes);
  if (first.size == bytes.size()) return first;
  if (first.size < kShortest) first.effort = Effort::thorough;
  while (first.size < bytes.size()) {
    const Segment next = run(bytes.subspan(first.size));
    const bool isOther = next.effort != first.effort;
    if (isOther && (next.size >= kShortest || next.effort == Effort::thorough)) break;
    first.size += next.size;
  }
  return first;
}

}  // namespace corvane::ditto
