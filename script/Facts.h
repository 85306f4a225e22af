// What a run knows about its machine and user: plain values, read once at start and never changed.
// Owner: the composition root; everybody else borrows. Thread: any, the values are immutable.
#pragma once

#include <string>

namespace corvane {

struct Facts {
  // Absolute paths in UTF-8, without a trailing slash.
  std::string homeDirectory;
  std::string libraryFolder;
  std::string appSupportFolder;
  std::string documentsFolder;
  /// Folder of the command line tools that travel with the application; looked up after the system's own.
  std::string toolsFolder;

  std::string userName;               ///< short login name
  std::string localizedComputerName;  ///< the host name as it stands in archive names

  double appKitVersion = 0;    ///< decides which folders of Apple Mail exist
  int minorSystemVersion = 0;  ///< the 8 of 10.8; decides what the address book is called
};

/// The folder of the program's own files.
[[nodiscard]] inline std::string supportFolder(const Facts& facts) {
  return facts.appSupportFolder + "/Quillon/Corvane";
}

}  // namespace corvane
