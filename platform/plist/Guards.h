// What keeps hostile bytes away from the readers of property lists. Those recurse, copy shared values as
// often as they are referred to, and forgive much: a number that is none reads as 0, an unclosed tag as a
// closed one. A guard looks at the bytes first, without recursion, in time and memory proportional to their
// number. Pure functions; any thread.
#pragma once

#include <cstddef>
#include <string_view>

namespace corvane {

/// Arrays and dictionaries inside each other, the outermost one included.
inline constexpr std::size_t kMaxPropertyListDepth = 64;
/// Keys and values of all kinds, a shared value counted as often as it is referred to.
inline constexpr std::size_t kMaxPropertyListValues = 10'000;

/// What is wrong, as the end of a sentence that begins with "it"; empty when a reader may have the bytes.
using Fault = std::string_view;

/// `text` is the whole file, without a byte order mark. Faults are also: bytes that are no UTF-8,
/// declarations of entities, elements where none belongs, anything after the end, numbers that are none.
[[nodiscard]] Fault faultInXml(std::string_view text);

/// `bytes` is the whole file. Faults are also: offsets, lengths and references that lead out of it, values
/// that contain themselves, zero bytes in a text.
[[nodiscard]] Fault faultInBinary(std::string_view bytes);

/// `text` is the whole file, without a byte order mark, in the format of OpenStep or GNUstep's extension of
/// it. Faults are the same as for XML, and control characters, which GNUstep's reader takes for yet another
/// format.
[[nodiscard]] Fault faultInOpenStep(std::string_view text);

namespace faults {
inline constexpr Fault kDepth = "is nested too deeply";
inline constexpr Fault kSize = "holds too many values";
inline constexpr Fault kEncoding = "is not a text in UTF-8";
inline constexpr Fault kNumber = "holds a number that is none";
inline constexpr Fault kUnfinished = "is not complete";
inline constexpr Fault kMalformed = "is malformed";
inline constexpr Fault kDeclaration = "has a declaration that is not supported";
inline constexpr Fault kCycle = "holds a value that contains itself";
}  // namespace faults

}  // namespace corvane
