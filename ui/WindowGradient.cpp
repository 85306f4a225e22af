#include "ui/WindowGradient.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace corvane {

Length* makeGradientRecord(const GradientColour& start, const GradientColour& end) {
  auto* record = static_cast<Length*>(std::malloc(8 * sizeof(Length)));
  if (!record) return nullptr;
  const Length components[] = {start.red, start.green, start.blue, start.alpha,
                               end.red,   end.green,   end.blue,   end.alpha};
  std::copy(std::begin(components), std::end(components), record);
  return record;
}

void evaluateGradient(void* record, const Length* position, Length* colour) {
  const auto* start = static_cast<const Length*>(record);
  const auto* end = start + 4;
  const Length t = *position;
  for (int component = 0; component < 4; ++component) {
    colour[component] = (1 - t) * start[component] + t * end[component];
  }
}

void releaseGradientRecord(void* record) { std::free(record); }

}  // namespace corvane
