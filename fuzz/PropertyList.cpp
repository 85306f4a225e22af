// The reader of one of the formats, which CMakeLists.txt names: a value that it makes can be written, and
// what was written can be read. Ends the program when it is not so.
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

#include "platform/plist/Codec.h"
#include "platform/plist/Guards.h"

using namespace corvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // The copy ends where the input ends, so that reading past it is noticed.
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  if (!FAULT_IN(bytes).empty()) return 0;
  const auto value = DECODE(bytes);
  const auto* dictionary = value ? value->as<PropertyListDictionary>() : nullptr;
  const auto xml = dictionary ? encodeXml(*dictionary) : std::nullopt;
  if (!xml) return 0;
  if (!faultInXml(*xml).empty()) std::abort();
  const auto again = decodeXml(*xml);
  if (!again || again->as<PropertyListDictionary>()->size() != dictionary->size()) std::abort();
  return 0;
}
