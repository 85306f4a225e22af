// The machine's name in the two forms that are shown to people.
// Thread: any; asks the system for its host name, never the network.
#pragma once

#include <string>
#include <string_view>

namespace corvane {

class QSComputerName {
 public:
  /// The host name without the white space at its beginning, up to the first ".local" in capitals or not, in
  /// lower case; "Unknown Computer Name" when nothing is left.
  [[nodiscard]] static std::string getComputerName();
  [[nodiscard]] static std::string getComputerName(std::string_view hostName);

  /// The host name with every blank replaced by "-", otherwise unchanged.
  [[nodiscard]] static std::string getLocalizedComputerName();
  [[nodiscard]] static std::string getLocalizedComputerName(std::string hostName);
};

}  // namespace corvane
