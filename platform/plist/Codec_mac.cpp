#include "platform/cocoa/FoundationPropertyList.h"
#include "platform/plist/Codec.h"

namespace corvane {

std::optional<PropertyListValue> decodeXml(std::string_view text) { return readWithFoundation(text); }

std::optional<PropertyListValue> decodeBinary(std::string_view bytes) { return readWithFoundation(bytes); }

std::optional<PropertyListValue> decodeOpenStep(std::string_view text) { return readWithFoundation(text); }

std::optional<std::string> encodeXml(const PropertyListDictionary& dictionary) {
  return xmlFromFoundation(dictionary);
}

}  // namespace corvane
