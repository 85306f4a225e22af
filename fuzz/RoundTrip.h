// What a fuzzer asks of a value that a reader made: it can be written, and what was written can be read.
// Ends the program when it is not so. Thread: any.
#pragma once

#include <cstdlib>
#include <optional>

#include "platform/plist/Codec.h"
#include "platform/plist/Guards.h"

namespace corvane {

inline void roundTrip(const std::optional<PropertyListValue>& value) {
  const auto* dictionary = value ? value->as<PropertyListDictionary>() : nullptr;
  const auto xml = dictionary ? encodeXml(*dictionary) : std::nullopt;
  if (!xml) return;
  if (!faultInXml(*xml).empty()) std::abort();
  const auto again = decodeXml(*xml);
  if (!again || again->as<PropertyListDictionary>()->size() != dictionary->size()) std::abort();
}

}  // namespace corvane
