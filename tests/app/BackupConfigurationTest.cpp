// What is configured, and the destination that comes of it.
#include "app/BackupConfiguration.h"

#include <gmock/gmock.h>
#include <cmath>

#include "app/DestinationCheck.h"
#include "app/DockPosition.h"
#include "app/MountRequest.h"
#include "tests/support/RecordingPorts.h"
#include "tests/support/StandardError.h"

namespace corvane {
namespace {

using Dictionary = PropertyListDictionary;
using Events = std::vector<std::string>;
using testing::HasSubstr;

PropertyListValue text(const char* value) { return {std::string(value)}; }
PropertyListValue number(std::int64_t value) { return {value}; }

TEST(PreferencesTest, DefaultsTypesAndExactComparisons) {
  std::string problem;
  const auto empty = preferencesFrom({}, problem);
  ASSERT_TRUE(empty);
  EXPECT_FALSE(empty->isConfigured());
  EXPECT_EQ(empty->filenameTemplate, "(Machine Name)-(Username)-(Email Client)-Date.qvb");
  EXPECT_EQ(empty->dateFormat, "DD/MM/YYYY");
  EXPECT_TRUE(empty->quitEntourage);

  EXPECT_TRUE(preferencesFrom({{"currentConfiguration", text("")}}, problem)->isConfigured());
  EXPECT_FALSE(preferencesFrom({{"entourageAction", text("Set Entourage Offline")}}, problem)->quitEntourage);
  EXPECT_TRUE(preferencesFrom({{"entourageAction", text("set entourage offline")}}, problem)->quitEntourage);
  EXPECT_FALSE(preferencesFrom({{"filenameTemplate", number(7)}}, problem));
}

TEST(ConfigurationTest, ReadsWhatLooksLikeANumber) {
  const std::pair<PropertyListValue, int> rows[] = {{number(3), 3},
                                                    {number(-3), -3},
                                                    {number(1LL << 40), 2147483647},
                                                    {{-1e300}, -2147483647 - 1},
                                                    {{2.9}, 2},
                                                    {{std::nan("")}, 0},
                                                    {{true}, 1},
                                                    {text(" 12 apples"), 12},
                                                    {text("none"), 0},
                                                    {text("99999999999999999999"), 2147483647}};
  for (const auto& [value, expected] : rows) {
    std::string problem;
    const auto configuration =
        configurationFrom({{"Language", value}, {"Number Of Backups", value}}, problem);
    ASSERT_TRUE(configuration) << problem;
    EXPECT_EQ(configuration->script.language, expected);
    EXPECT_EQ(configuration->script.numberOfBackups, expected);
  }
}

TEST(ConfigurationTest, FlagsCountByPresence) {
  std::string problem;
  const auto absent = configurationFrom({}, problem)->script;
  EXPECT_FALSE(absent.backupAddressBook || absent.relaunchClient || absent.shutdownOnCompletion);
  EXPECT_EQ(absent.numberOfBackups, std::nullopt);
  Dictionary flags;
  for (const char* flag : {"Backup Address Book", "Relaunch Client", "Shutdown On Completion"})
    flags[flag] = {false};
  const auto present = configurationFrom(flags, problem)->script;
  EXPECT_TRUE(present.backupAddressBook && present.relaunchClient && present.shutdownOnCompletion);
}

TEST(ConfigurationTest, AWrongTypeMakesTheFileUnusableAndIsNamed) {
  const std::pair<const char*, PropertyListValue> rows[] = {
      {"Destination", number(1)},
      {"Destination", {std::string("/a\0b", 4)}},
      {"App Location", {Dictionary{}}},
      {"Clients", text("Apple Mail")},
      {"Clients", {PropertyListValue::Array{number(1)}}},
      {"Number Of Backups", {PropertyListValue::Array{}}},
      {"Automount", text("afp")},
      {"Automount", {Dictionary{{"Password", number(1)}}}}};
  for (const auto& [key, value] : rows) {
    std::string problem;
    EXPECT_FALSE(configurationFrom({{key, value}}, problem)) << key;
    EXPECT_THAT(problem, HasSubstr(key));
  }
  MemoryPropertyLists lists;  // of such a file nothing is used
  lists.files["Config.plist"] = {{"Destination", text("/Backups")}, {"Clients", text("Apple Mail")}};
  EXPECT_EQ(readConfiguration(lists, "/Support").script.destination, "");
}

TEST(DockPositionTest, IsBelowUnlessTheDockSaysOtherwise) {
  MemoryPropertyLists lists;
  EXPECT_EQ(getDockPosition(lists, "/Library"), DockPosition::bottom);
  auto& dock = lists.files["com.apple.dock.plist"];
  EXPECT_EQ(getDockPosition(lists, "/Library"), DockPosition::bottom);
  const std::pair<PropertyListValue, DockPosition> rows[] = {{text("bottom"), DockPosition::bottom},
                                                             {text("left"), DockPosition::left},
                                                             {text("Left"), DockPosition::right},
                                                             {number(1), DockPosition::bottom}};
  for (const auto& [orientation, position] : rows) {
    dock["orientation"] = orientation;
    EXPECT_EQ(getDockPosition(lists, "/Library"), position);
  }
}

const Automount kComplete{"files.local", "Backup Disk", "afp", "anna", "s3cret"};

TEST(MountRequestTest, EndsAtTheFirstMissingValue) {
  const char* const order[] = {"kServerNameKey", "kVolumeNameKey", "kTransportNameKey", "kMountDirectoryKey",
                               "kUserNameKey",   "kPasswordKey",   "kAsyncKey"};
  using A = Automount;
  std::optional<std::string> A::*const values[] = {&A::server, &A::path,     &A::protocol,
                                                   nullptr,    &A::username, &A::password};
  for (std::size_t count = 0; count < std::size(values); ++count) {
    if (!values[count]) continue;  // the folder is never missing
    Automount automount = kComplete;
    automount.*values[count] = std::nullopt;
    const auto request = mountRequestFor(automount);
    EXPECT_EQ(request.size(), count);
    for (std::size_t i = 0; i < count; ++i) EXPECT_TRUE(request.contains(order[i])) << order[i];
  }
  auto complete = mountRequestFor(kComplete);
  EXPECT_EQ(complete.size(), std::size(order));
  EXPECT_FALSE(*complete["kAsyncKey"].as<bool>());
  EXPECT_EQ(*complete["kMountDirectoryKey"].as<std::string>(), "");
  complete["kMountDirectoryKey"] = {std::string("a b")};
  EXPECT_EQ(serverVolumeFrom(complete).mountDirectoryUrl, "/Volumes/Backup%20Disk/a%20b");
  EXPECT_EQ(serverVolumeFrom({{"kServerNameKey", {std::string("h")}}}).url, "(null)://h/(null)");
}

TEST(MountRequestTest, EscapesWhatMayNotStandInAUrl) {
  EXPECT_EQ(percentEscaped("az AZ09-_.!~*'();/?:@&=+$,"), "az%20AZ09-_.!~*'();/?:@&=+$,");
  EXPECT_EQ(percentEscaped("\"#%<>[\\]^`{|}\t\x7F\u00E9"),
            "%22%23%25%3C%3E%5B%5C%5D%5E%60%7B%7C%7D%09%7F%C3%A9");
}

// A local destination that is there is no help to a run that wants a server.
TEST(DestinationCheckTest, LooksMountsAndLooksAgain) {
  const std::string mounting = "status Mounting Server Volume...";
  const std::string changed = "changed afp://files.local/Backup%20Disk";
  const std::string mounted = "status Backup destination mounted";
  const std::string url = "server afp://files.local/Backup%20Disk, ";
  const std::string success = "Sync-mounted " + url + "user == anna, refNum == -105\n";
  const std::string failure = "Sync mount failed for " + url + "error == -5023\n";
  const struct {
    const char *before, *after;  // what is mounted then, and what a mount adds
    MountOutcome outcome;
    bool available;
    Events events;  // after the first
    const char* log;
  } rows[] = {{"Backup Disk", "", {}, true, {}, "Server based destination is available"},
              {"", "Backup Disk", {}, true, {mounting, changed, mounted}, "destination is now available"},
              {"", "Backup Disk-1", {.reference = -105}, false, {mounting, changed}, success.c_str()},
              {"", "", {.error = -5023}, false, {mounting}, failure.c_str()},
              {"", "", {.error = 1, .problem = "no such user"}, false, {mounting}, "] no such user\n"},
              {"", "", {.error = 1}, false, {mounting}, "Server based destination is not available"},
              {"", "Backup Disk", {.error = 17}, true, {mounting, mounted}, "destination is now available"}};
  BackupConfiguration configuration;
  configuration.automount = kComplete;
  configuration.script.destination = "/";
  for (const auto& row : rows) {
    const StandardError log;
    FakeVolumes volumes;
    volumes.mounted = {row.before};
    volumes.outcome = row.outcome;
    volumes.appears = row.after;
    RecordingPorts ports;
    RunRecord record;
    const auto show = [&](const std::string& status) { ports.setStatus(status); };
    EXPECT_EQ(isDestinationAvailable(configuration, record, volumes, ports, show), row.available) << row.log;
    Events events{"status Checking backup destination..."};
    events.insert(events.end(), row.events.begin(), row.events.end());
    EXPECT_EQ(ports.events, events) << row.log;
    EXPECT_THAT(log.text(), testing::AllOf(HasSubstr(row.log), testing::Not(HasSubstr("s3cret"))));
    EXPECT_TRUE(record.useAutomount);
  }
}

}  // namespace
}  // namespace corvane
