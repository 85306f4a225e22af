// Port: property lists on disk, and the values in them.
// Owner: the composition root. Thread: main.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace corvane {

/// One value of a property list. Strings are UTF-8.
struct PropertyListValue {
  using Array = std::vector<PropertyListValue>;
  using Dictionary = std::map<std::string, PropertyListValue, std::less<>>;
  /// A date or data: the engine reads none, but a file may hold them.
  struct Other {};

  template <typename T>
  [[nodiscard]] const T* as() const {
    return std::get_if<T>(&value);
  }

  std::variant<Other, bool, std::int64_t, double, std::string, Array, Dictionary> value;
};

using PropertyListDictionary = PropertyListValue::Dictionary;

class PropertyLists {
 public:
  virtual ~PropertyLists() = default;

  /// The dictionary at the root of the file at `path`, in any of the property list formats. Nothing, and a
  /// sentence that names the file, when it is missing, larger than a configuration can be, malformed in any
  /// way, or holds no dictionary. Hostile files are safe to read.
  [[nodiscard]] virtual std::optional<PropertyListDictionary> readDictionary(const std::string& path,
                                                                             std::string& problem) = 0;

  /// Writes an XML property list, all of it or nothing. False, and the cause, when that failed.
  [[nodiscard]] virtual bool writeXml(const std::string& path, const PropertyListDictionary& dictionary,
                                      std::string& problem) = 0;
};

}  // namespace corvane
