#include "app/MissingApplication.h"

#include "process/Files.h"

namespace corvane {

bool isApplicationMissing(const std::optional<std::string>& configuredPlace, const std::string& usualPlace) {
  return !(configuredPlace && fileExists(*configuredPlace)) && !fileExists(usualPlace);
}

Alert missingApplicationAlert() {
  return {
      AlertStyle::critical,
      "Missing Corvane?",
      "Corvane appears to have moved locations or has been uninstalled. Would you like to complete the "
      "uninstallation or continue backup?\n\n"
      "If Corvane has been moved, stop this error by simply launching Corvane again from its new location.",
      {"Uninstall", "Continue Backup"}};
}

}  // namespace corvane
