// Property lists through the frameworks' own reader and writer: all of them on macOS, those in OpenStep's
// format on Linux. Exceptions that hostile bytes raise end here. Thread: main; needs no autorelease pool.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "app/PropertyLists.h"

namespace corvane {

/// As the readers of plist/Codec.h.
[[nodiscard]] std::optional<PropertyListValue> readWithFoundation(std::string_view bytes);

/// As `encodeXml` of plist/Codec.h.
[[nodiscard]] std::optional<std::string> xmlFromFoundation(const PropertyListDictionary& dictionary);

}  // namespace corvane
