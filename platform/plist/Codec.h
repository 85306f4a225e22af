// Readers and the writer of property lists in memory. Readers are only for bytes that the guards (Guards.h)
// let pass. Each system has its own set, picked in the build file. Thread: main.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "app/PropertyLists.h"

namespace corvane {

/// The value at the root. Nothing when the bytes are malformed, or a text in them is no Unicode. Whole
/// numbers beyond 63 bits come as reals. A key that occurs twice has its last value.
[[nodiscard]] std::optional<PropertyListValue> decodeXml(std::string_view text);
[[nodiscard]] std::optional<PropertyListValue> decodeBinary(std::string_view bytes);
/// In the format of OpenStep; on Linux also in GNUstep's extension of it.
[[nodiscard]] std::optional<PropertyListValue> decodeOpenStep(std::string_view text);

/// The whole file. Nothing when there is something in the dictionary that has no form in XML: a control
/// character, a text that is no UTF-8, an infinite number, a value of unknown kind.
[[nodiscard]] std::optional<std::string> encodeXml(const PropertyListDictionary& dictionary);

}  // namespace corvane
