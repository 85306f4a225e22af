#include <plist/plist.h>

#include <cmath>
#include <cstdlib>
#include <memory>
#include <utility>

#include "platform/cocoa/FoundationPropertyList.h"
#include "platform/plist/Codec.h"
#include "platform/plist/Texts.h"
#include "process/Utf8Decoder.h"
#include "script/Text.h"

namespace corvane {
namespace {

struct Free {
  void operator()(void* node) const { plist_free(node); }
};
struct FreeMemory {
  void operator()(void* memory) const { std::free(memory); }
};
using Node = std::unique_ptr<void, Free>;
using Memory = std::unique_ptr<void, FreeMemory>;
using Text = std::unique_ptr<char, FreeMemory>;

std::string written(plist_t node) {
  char* bytes = nullptr;
  std::uint32_t length = 0;
  plist_to_xml(node, &bytes, &length);
  const std::unique_ptr<char, decltype(&plist_to_xml_free)> owner(bytes, plist_to_xml_free);
  return {bytes, length};
}

// Each of these is false when a text in the node is no Unicode.
bool convert(plist_t node, PropertyListValue& value);

// The library does not tell -1 from 2^64 - 1, except in what it writes.
void convertInteger(plist_t node, PropertyListValue& value) {
  std::uint64_t number = 0;
  plist_get_uint_val(node, &number);
  const auto whole = static_cast<std::int64_t>(number);
  if (whole < 0 && !contains(written(node), "<integer>-")) {
    value.value = static_cast<double>(number);
  } else {
    value.value = whole;
  }
}

bool convertText(plist_t node, PropertyListValue& value) {
  std::uint64_t length = 0;
  const char* bytes = plist_get_string_ptr(node, &length);
  const auto& text = value.value.emplace<std::string>(bytes ? bytes : "", bytes ? length : 0);
  return isUtf8(text);
}

bool convertArray(plist_t node, PropertyListValue& value) {
  auto& values = value.value.emplace<PropertyListValue::Array>();
  plist_array_iter iterator = nullptr;
  plist_array_new_iter(node, &iterator);
  const Memory owner(iterator);
  for (;;) {
    plist_t item = nullptr;
    plist_array_next_item(node, iterator, &item);
    if (!item) return true;
    if (!convert(item, values.emplace_back())) return false;
  }
}

bool convertDictionary(plist_t node, PropertyListValue& value) {
  auto& values = value.value.emplace<PropertyListDictionary>();
  plist_dict_iter iterator = nullptr;
  plist_dict_new_iter(node, &iterator);
  const Memory owner(iterator);
  for (;;) {
    char* name = nullptr;
    plist_t item = nullptr;
    plist_dict_next_item(node, iterator, &name, &item);
    const Text key(name);
    if (!key || !item) return true;
    if (!isUtf8(key.get()) || !convert(item, values[key.get()])) return false;
  }
}

bool convert(plist_t node, PropertyListValue& value) {
  std::uint8_t flag = 0;
  switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN:
      plist_get_bool_val(node, &flag);
      value.value = flag != 0;
      return true;
    case PLIST_REAL:
      plist_get_real_val(node, &value.value.emplace<double>());
      return true;
    case PLIST_UINT:
      convertInteger(node, value);
      return true;
    case PLIST_STRING:
      return convertText(node, value);
    case PLIST_ARRAY:
      return convertArray(node, value);
    case PLIST_DICT:
      return convertDictionary(node, value);
    default:
      value.value = PropertyListValue::Other();
      return true;
  }
}

std::optional<PropertyListValue> decode(std::string_view bytes,
                                        void (&read)(const char*, std::uint32_t, plist_t*)) {
  plist_t root = nullptr;
  read(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &root);
  const Node owner(root);
  std::optional<PropertyListValue> value(std::in_place);
  if (!root || !convert(root, *value)) value.reset();
  return value;
}

// One overload for each kind of value; a null node where there is no form for it.
struct NodeFrom {
  Node operator()(const PropertyListValue::Other&) const { return nullptr; }
  Node operator()(bool flag) const { return Node(plist_new_bool(flag ? 1 : 0)); }
  Node operator()(std::int64_t number) const {
#ifdef HAVE_PLIST_NEW_INT
    return Node(plist_new_int(number));
#else
    return Node(plist_new_uint(static_cast<std::uint64_t>(number)));  // signed all the same
#endif
  }
  Node operator()(double number) const {
    return std::isfinite(number) ? Node(plist_new_real(number)) : nullptr;
  }
  Node operator()(const std::string& text) const {
    return hasFormInXml(text) ? Node(plist_new_string(text.c_str())) : nullptr;
  }
  Node operator()(const PropertyListValue::Array& values) const {
    Node array(plist_new_array());
    for (const auto& value : values) {
      Node item = std::visit(*this, value.value);
      if (!item) return nullptr;
      plist_array_append_item(array.get(), item.release());
    }
    return array;
  }
  Node operator()(const PropertyListDictionary& values) const {
    Node dictionary(plist_new_dict());
    for (const auto& [key, value] : values) {
      Node item = std::visit(*this, value.value);
      if (!item || !hasFormInXml(key)) return nullptr;
      plist_dict_set_item(dictionary.get(), key.c_str(), item.release());
    }
    return dictionary;
  }
};

}  // namespace

std::optional<PropertyListValue> decodeXml(std::string_view text) { return decode(text, plist_from_xml); }

std::optional<PropertyListValue> decodeBinary(std::string_view bytes) {
  return decode(bytes, plist_from_bin);
}

std::optional<PropertyListValue> decodeOpenStep(std::string_view text) { return readWithFoundation(text); }

std::optional<std::string> encodeXml(const PropertyListDictionary& dictionary) {
  const Node root = NodeFrom()(dictionary);
  return root ? std::optional(written(root.get())) : std::nullopt;
}

}  // namespace corvane
