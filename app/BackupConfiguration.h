// The user's settings for a run, read from two property lists that the companion application writes.
// Plain values; thread: any.
#pragma once

#include <optional>
#include <string>

#include "app/PropertyLists.h"
#include "script/ScriptAssembly.h"

namespace corvane {

inline constexpr const char* kNotConfigured = "Corvane is currently not configured.";

/// The preferences file: how archives are named, and whether there is anything to do at all.
struct Preferences {
  std::string currentConfiguration = kNotConfigured;
  std::string filenameTemplate;
  std::string dateFormat;
  bool quitEntourage = true;

  [[nodiscard]] bool isConfigured() const;
};

/// A volume on a file server. Absent values stay absent: the mount request ends at the first of them.
struct Automount {
  std::optional<std::string> server;
  std::optional<std::string> path;
  std::optional<std::string> protocol;
  std::optional<std::string> username;
  std::optional<std::string> password;
};

/// "Config.plist": what is backed up, and where to.
struct BackupConfiguration {
  std::optional<std::string> appLocation;
  std::optional<Automount> automount;
  ScriptOptions script;
};

/// The settings in a dictionary, defaults for what is absent. Nothing when a key that decides over mail holds
/// a value of a type that cannot be meant; `problem` then names the key.
[[nodiscard]] std::optional<Preferences> preferencesFrom(const PropertyListDictionary& dictionary,
                                                         std::string& problem);
[[nodiscard]] std::optional<BackupConfiguration> configurationFrom(const PropertyListDictionary& dictionary,
                                                                   std::string& problem);

/// Reads the preferences: the file in the usual spelling, or the lower-case one when that cannot be read.
/// Nothing when neither can; the causes are logged.
[[nodiscard]] std::optional<Preferences> readPreferences(PropertyLists& lists,
                                                         const std::string& libraryFolder);

/// Reads "Config.plist" in the folder of the program's own files. A file that cannot be read counts as an
/// empty one; the cause is logged.
[[nodiscard]] BackupConfiguration readConfiguration(PropertyLists& lists, const std::string& supportFolder);

}  // namespace corvane
