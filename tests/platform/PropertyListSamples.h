// Property lists made by hand, sound and hostile, for the tests of their readers and writer.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>

#include "platform/SystemPropertyLists.h"
#include "process/Files.h"
#include "tests/support/ScratchFolder.h"

namespace corvane {

using namespace std::string_literals;

/// `value` in one line: {a: 1, b: [true, "text", 1.5], c: other}, keys sorted.
inline std::string describe(const PropertyListValue& value) {
  if (const auto* flag = value.as<bool>()) return *flag ? "true" : "false";
  if (const auto* number = value.as<std::int64_t>()) return std::to_string(*number);
  if (const auto* number = value.as<double>()) return std::to_string(*number);
  if (const auto* text = value.as<std::string>()) return '"' + *text + '"';
  std::string parts;
  const auto add = [&parts](const std::string& part) { parts += (parts.empty() ? "" : ", ") + part; };
  if (const auto* array = value.as<PropertyListValue::Array>()) {
    for (const auto& item : *array) add(describe(item));
    return "[" + parts + "]";
  }
  const auto* dictionary = value.as<PropertyListDictionary>();
  if (!dictionary) return "other";
  for (const auto& [key, item] : *dictionary) add(key + ": " + describe(item));
  return "{" + parts + "}";
}

inline std::string bigEndian(std::uint64_t number, int width) {
  std::string bytes;
  while (width-- > 0) bytes += static_cast<char>(number >> (8 * width) & 255);
  return bytes;
}

/// The marker of an object with its count, in the long form when the short one has no room.
inline std::string counted(int kind, std::size_t count) {
  if (count < 15) return {static_cast<char>(kind | static_cast<int>(count))};
  return std::string{static_cast<char>(kind | 15), 0x12} + bigEndian(count, 4);
}

inline std::string binaryText(std::string_view text) {
  return counted(0x50, text.size()) + std::string(text);
}

/// An array (0xA0), or a dictionary (0xD0) whose `items` are the keys, followed by as many values.
inline std::string container(int kind, const std::vector<unsigned>& items) {
  std::string object = counted(kind, kind == 0xD0 ? items.size() / 2 : items.size());
  for (const unsigned item : items) object += bigEndian(item, 2);
  return object;
}
inline std::string binaryArray(const std::vector<unsigned>& items) { return container(0xA0, items); }
inline std::string binaryDictionary(const std::vector<unsigned>& items) { return container(0xD0, items); }

/// The last 32 bytes: the sizes, the number of objects, the root and where the table of offsets is.
inline std::string binaryTrailer(std::uint64_t objects, std::uint64_t root, std::uint64_t table,
                                 std::string sizes = "\x04\x02") {
  return std::string(6, '\0') + sizes + bigEndian(objects, 8) + bigEndian(root, 8) + bigEndian(table, 8);
}

/// A file of objects that refer to each other by their index; the first one is the root.
inline std::string binaryFile(const std::vector<std::string>& objects) {
  std::string bytes = "bplist00";
  std::string table;
  for (const auto& object : objects) {
    table += bigEndian(bytes.size(), 4);
    bytes += object;
  }
  return bytes + table + binaryTrailer(objects.size(), 0, bytes.size());
}

inline std::string xmlFile(const std::string& root) {
  return R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">)" +
         root + "</plist>";
}

/// `part`, `count` times.
inline std::string repeated(std::string_view part, std::size_t count) {
  std::string text;
  while (count-- > 0) text += part;
  return text;
}

class PropertyListTest : public testing::Test {
 protected:
  /// The description of the dictionary in the file, or why there is none. What takes for ever is stopped by
  /// the test runner's limit.
  std::string read() {
    const auto dictionary = lists_.readDictionary(path_, problem_);
    return dictionary ? describe({*dictionary}) : problem_;
  }
  std::string read(const std::string& bytes) {
    return writeFileAtomically(path_, bytes, problem_) ? read() : problem_;
  }
  void expectRefused(const std::string& fault, const std::vector<std::string>& files) {
    for (const auto& bytes : files)
      EXPECT_THAT(read(bytes), testing::HasSubstr(path_ + ": it " + fault)) << bytes.substr(0, 300);
  }

  const ScratchFolder folder_;
  const std::string path_ = folder_.path("Config.plist");
  SystemPropertyLists lists_;
  std::string problem_;
};

}  // namespace corvane
