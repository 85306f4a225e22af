// The values that the steps of one run pass on to each other.
// Owner: AppController, for the life of the process. Thread: main.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// A property list that says what an archive holds. A recipe asks for it, the controller writes it before
/// the script runs, and the script carries it into the archive.
struct Manifest {
  std::string path;
  std::string client;
  std::int32_t language = 0;
};

struct RunRecord {
  // From the preferences.
  std::string filenameTemplate;
  std::string dateFormat;
  bool quitEntourage = true;

  // From the configuration and the destination check.
  std::int32_t language = 0;
  bool useAutomount = false;  ///< the destination is a server volume: archives are built in /tmp

  // Written while the script is assembled.
  std::string shellScript;
  std::string currentFilename;  ///< name of the client's archive, its date still a shell command
  std::string microsoftSourceFolder;
  std::vector<std::string> copiedArchives;  ///< names of archives that are built in /tmp for the server
  double progressMaximum = 100.0;           ///< of the step bar; 100 is what a bar starts with

  // Written by the recipes.
  std::string finalFileName;
  std::string contentsLocation;        ///< manifest to delete when the run ends; empty for none
  std::string emailTempDirectoryPath;  ///< staging folder
  /// Staging folder to delete after a failed run: the same path, of which the controller takes backslashes
  /// out.
  std::optional<std::string> tempFolderStore;
  std::string mailTempFolder;
  std::string mailSizeTempFolder;  ///< its growth shows how far the copy of Apple Mail's data has come
  std::vector<Manifest> manifests;
};

}  // namespace corvane
