#include <pwd.h>
#include <unistd.h>
#include <array>

#include "platform/HomeDirectory.h"
#include "platform/SystemFacts.h"
#include "process/QSComputerName.h"

namespace corvane {
namespace {

// The folders below the home are those of macOS, so the mail clients are looked for as on a current one.
constexpr double kAppKitOfCurrentSystem = 1671;
constexpr int kMinorVersionOfCurrentSystem = 14;

std::string getLibraryFolder() { return getHomeDirectory() + "/Library"; }
std::string getAppSupportFolder() { return getLibraryFolder() + "/Application Support"; }
std::string getDocumentsFolder() { return getHomeDirectory() + "/Documents"; }

std::string userName() {
  const passwd* entry = ::getpwuid(::geteuid());
  return entry && entry->pw_name ? entry->pw_name : std::to_string(::geteuid());
}

// Beside the program, wherever the application folder was put.
std::string getToolsFolder() {
  std::array<char, 4096> path{};
  const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size() - 1);
  if (length <= 0) return {};
  const std::string program(path.data(), static_cast<std::size_t>(length));
  return program.substr(0, program.find_last_of('/')) + "/Resources/bin";
}

}  // namespace

Facts readFacts() {
  return {.homeDirectory = getHomeDirectory(),
          .libraryFolder = getLibraryFolder(),
          .appSupportFolder = getAppSupportFolder(),
          .documentsFolder = getDocumentsFolder(),
          .toolsFolder = getToolsFolder(),
          .userName = userName(),
          .localizedComputerName = QSComputerName::getLocalizedComputerName(),
          .appKitVersion = kAppKitOfCurrentSystem,
          .minorSystemVersion = kMinorVersionOfCurrentSystem};
}

}  // namespace corvane
