// Points and rectangles of a screen or window: the origin is the lower left corner, y grows upward.
// Plain values; thread: any.
#pragma once

#include <type_traits>

namespace corvane {

/// The windowing system's own floating type, so that lengths cross to it unchanged.
using Length = std::conditional_t<sizeof(void*) == 8, double, float>;

struct Point {
  Length x = 0;
  Length y = 0;
  bool operator==(const Point&) const = default;
};

struct Size {
  Length width = 0;
  Length height = 0;
  bool operator==(const Size&) const = default;
};

struct Rect {
  Length x = 0;
  Length y = 0;
  Length width = 0;
  Length height = 0;
  bool operator==(const Rect&) const = default;
};

}  // namespace corvane
