// Property lists as the system reads and writes them, behind guards against hostile files.
// Owner: the composition root. Thread: main.
#pragma once

#include "app/PropertyLists.h"

namespace corvane {

class SystemPropertyLists : public PropertyLists {
 public:
  /// XML and OpenStep's format are read in UTF-8 only.
  [[nodiscard]] std::optional<PropertyListDictionary> readDictionary(const std::string& path,
                                                                     std::string& problem) override;

  [[nodiscard]] bool writeXml(const std::string& path, const PropertyListDictionary& dictionary,
                              std::string& problem) override;
};

}  // namespace corvane
