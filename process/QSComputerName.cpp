#include "process/QSComputerName.h"

#include <unistd.h>

#include <algorithm>
#include <array>

namespace corvane {
namespace {

std::string currentHostName() {
  std::array<char, 256> name{};
  if (::gethostname(name.data(), name.size() - 1) != 0) return {};
  return name.data();
}

// Host names are ASCII; the C library's own tolower would follow the user's language.
char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

std::string QSComputerName::getComputerName() { return getComputerName(currentHostName()); }

std::string QSComputerName::getComputerName(std::string_view hostName) {
  hostName.remove_prefix(std::min(hostName.find_first_not_of(" \t\n\v\f\r"), hostName.size()));
  std::string name(hostName);
  std::transform(name.begin(), name.end(), name.begin(), lower);
  name.resize(std::min(name.find(".local"), name.size()));
  return name.empty() ? "Unknown Computer Name" : name;
}

std::string QSComputerName::getLocalizedComputerName() { return getLocalizedComputerName(currentHostName()); }

std::string QSComputerName::getLocalizedComputerName(std::string hostName) {
  std::replace(hostName.begin(), hostName.end(), ' ', '-');
  return hostName;
}

}  // namespace corvane
