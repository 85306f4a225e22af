#include "app/BackupConfiguration.h"

#include <cmath>
#include <cstdlib>
#include <limits>
#include <string_view>

#include "process/Log.h"
#include "script/FileNaming.h"

namespace corvane {
namespace {

// Reads typed values out of one dictionary and remembers the first key whose value has the wrong type.
class Reader {
 public:
  Reader(const PropertyListDictionary& dictionary, std::string& problem)
      : dictionary_(dictionary), problem_(problem) {}

  [[nodiscard]] bool has(std::string_view key) const { return dictionary_.contains(key); }

  template <typename T>
  [[nodiscard]] const T* value(std::string_view key, std::string_view wanted) {
    const auto found = dictionary_.find(key);
    if (found == dictionary_.end()) return nullptr;
    const T* typed = found->second.as<T>();
    if (!typed) complain(key, wanted);
    return typed;
  }

  // A zero byte would cut a path short on its way to the system.
  [[nodiscard]] std::optional<std::string> text(std::string_view key) {
    const auto* text = value<std::string>(key, "a text");
    if (text && text->find('\0') != std::string::npos) complain(key, "a text without zero bytes");
    return text ? std::optional(*text) : std::nullopt;
  }

  [[nodiscard]] const PropertyListValue* any(std::string_view key) const {
    const auto found = dictionary_.find(key);
    return found == dictionary_.end() ? nullptr : &found->second;
  }

  void complain(std::string_view key, std::string_view wanted) {
    sound_ = false;
    problem_ = "the value of \"" + std::string(key) + "\" is not " + std::string(wanted);
  }

  [[nodiscard]] bool sound() const { return sound_; }

 private:
  const PropertyListDictionary& dictionary_;
  std::string& problem_;
  bool sound_ = true;
};

std::int32_t clamp32(double number) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (std::isnan(number)) return 0;
  if (number <= Limits::min()) return Limits::min();
  if (number >= Limits::max()) return Limits::max();
  return static_cast<std::int32_t>(number);
}

// The integer value of a number, a truth value or a text that starts with one (otherwise 0); nothing for
// a value of any other type.
std::optional<std::int32_t> integerValue(const PropertyListValue& value) {
  if (const auto* flag = value.as<bool>()) return *flag ? 1 : 0;
  if (const auto* number = value.as<std::int64_t>()) return clamp32(static_cast<double>(*number));
  if (const auto* number = value.as<double>()) return clamp32(*number);
  if (const auto* text = value.as<std::string>()) {
    return clamp32(static_cast<double>(std::strtoll(text->c_str(), nullptr, 10)));
  }
  return std::nullopt;
}

std::vector<std::string> clientNames(Reader& reader) {
  std::vector<std::string> names;
  const auto* entries = reader.value<PropertyListValue::Array>("Clients", "a list of names");
  if (!entries) return names;
  for (const auto& entry : *entries) {
    const auto* name = entry.as<std::string>();
    if (!name) reader.complain("Clients", "a list of names");
    names.push_back(name ? *name : "");
  }
  return names;
}

// A text counts as the number that it begins with, or as 0. What cannot be meant as a number at all must not
// prune anybody's archives, so it makes the whole file unusable.
std::optional<int> archiveLimit(Reader& reader) {
  const auto* entry = reader.any("Number Of Backups");
  if (!entry) return std::nullopt;
  const auto limit = integerValue(*entry);
  if (!limit) reader.complain("Number Of Backups", "a number");
  return limit;
}

std::optional<Automount> automountFrom(Reader& reader, std::string& problem) {
  const auto* dictionary = reader.value<PropertyListDictionary>("Automount", "a dictionary");
  if (!dictionary) return std::nullopt;
  Reader volume(*dictionary, problem);
  Automount automount{volume.text("Server"), volume.text("Path"), volume.text("Protocol"),
                      volume.text("Username"), volume.text("Password")};
  if (!volume.sound()) reader.complain("Automount", "a complete description: " + problem);
  return automount;
}

ScriptOptions scriptOptions(Reader& reader) {
  const auto* language = reader.any("Language");
  return {.clients = clientNames(reader),
          .destination = reader.text("Destination").value_or(""),
          .language = language ? integerValue(*language).value_or(0) : 0,
          .backupAddressBook = reader.has("Backup Address Book"),
          .relaunchClient = reader.has("Relaunch Client"),
          .shutdownOnCompletion = reader.has("Shutdown On Completion"),
          .numberOfBackups = archiveLimit(reader)};
}

template <typename Settings>
std::optional<Settings> readSettings(PropertyLists& lists, const std::string& path,
                                     std::optional<Settings> (*from)(const PropertyListDictionary&,
                                                                     std::string&)) {
  std::string problem;
  const auto dictionary = lists.readDictionary(path, problem);
  if (!dictionary) {
    log(problem);
    return std::nullopt;
  }
  auto settings = from(*dictionary, problem);
  if (!settings) log("cannot use " + path + ": " + problem);
  return settings;
}

}  // namespace

bool Preferences::isConfigured() const { return currentConfiguration != kNotConfigured; }

std::optional<Preferences> preferencesFrom(const PropertyListDictionary& dictionary, std::string& problem) {
  Reader reader(dictionary, problem);
  Preferences preferences;
  preferences.currentConfiguration = reader.text("currentConfiguration").value_or(kNotConfigured);
  preferences.filenameTemplate =
      reader.text("filenameTemplate").value_or(std::string(kDefaultFilenameTemplate));
  preferences.dateFormat = reader.text("filenameDateFormat").value_or(std::string(kDefaultDateFormat));
  preferences.quitEntourage = reader.text("entourageAction") != "Set Entourage Offline";
  return reader.sound() ? std::optional(preferences) : std::nullopt;
}

std::optional<BackupConfiguration> configurationFrom(const PropertyListDictionary& dictionary,
                                                     std::string& problem) {
  Reader reader(dictionary, problem);
  BackupConfiguration configuration;
  configuration.appLocation = reader.text("App Location");
  configuration.automount = automountFrom(reader, problem);
  configuration.script = scriptOptions(reader);
  return reader.sound() ? std::optional(configuration) : std::nullopt;
}

std::optional<Preferences> readPreferences(PropertyLists& lists, const std::string& libraryFolder) {
  const std::string folder = libraryFolder + "/Preferences/";
  auto preferences = readSettings(lists, folder + "com.quillon.Corvane.plist", preferencesFrom);
  if (!preferences) preferences = readSettings(lists, folder + "com.quillon.corvane.plist", preferencesFrom);
  return preferences;
}

BackupConfiguration readConfiguration(PropertyLists& lists, const std::string& supportFolder) {
  return readSettings(lists, supportFolder + "/Config.plist", configurationFrom)
      .value_or(BackupConfiguration{});
}

}  // namespace corvane
