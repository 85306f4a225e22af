#include "app/BackupConfiguration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <cmath>

#include "app/DockPosition.h"
#include "tests/support/RecordingPorts.h"

namespace corvane {
namespace {

using Dictionary = PropertyListDictionary;
using testing::HasSubstr;

PropertyListValue text(const char* value) { return {std::string(value)}; }
PropertyListValue number(std::int64_t value) { return {value}; }

TEST(PreferencesTest, DefaultsAndExactComparisons) {
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
}

TEST(PreferencesTest, FallsBackToTheLowerCaseFile) {
  MemoryPropertyLists lists;
  lists.files["com.quillon.corvane.plist"] = {{"currentConfiguration", text("lower")}};
  EXPECT_EQ(readPreferences(lists, "/Library")->currentConfiguration, "lower");
  lists.files["com.quillon.Corvane.plist"] = {{"currentConfiguration", text("usual")}};
  EXPECT_EQ(readPreferences(lists, "/Library")->currentConfiguration, "usual");
  lists.files["com.quillon.Corvane.plist"] = {{"filenameTemplate", number(7)}};
  EXPECT_EQ(readPreferences(lists, "/Library")->currentConfiguration, "lower");
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
  const PropertyListValue no{false};
  const auto present =
      configurationFrom(
          {{"Backup Address Book", no}, {"Relaunch Client", no}, {"Shutdown On Completion", no}}, problem)
          ->script;
  EXPECT_TRUE(present.backupAddressBook && present.relaunchClient && present.shutdownOnCompletion);
}

TEST(ConfigurationTest, ReadsAServerVolume) {
  std::string problem;
  const Dictionary volume{
      {"Server", text("files.local")}, {"Path", text("Backups")}, {"Username", text("anna")}};
  const auto configuration = configurationFrom({{"Automount", {volume}}}, problem);
  ASSERT_TRUE(configuration && configuration->automount);
  EXPECT_EQ(configuration->automount->path, "Backups");
  EXPECT_EQ(configuration->automount->protocol, std::nullopt);
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
}

TEST(ConfigurationTest, AnUnusableFileCountsAsAnEmptyOne) {
  MemoryPropertyLists lists;
  lists.files["Config.plist"] = {{"Destination", text("/Backups")}, {"Clients", text("Apple Mail")}};
  EXPECT_EQ(readConfiguration(lists, "/Support").script.destination, "");
}

TEST(DockPositionTest, DecidesWhereTheWindowStands) {
  MemoryPropertyLists lists;
  const auto at = [&](DockPosition position, double x) {
    EXPECT_EQ(getDockPosition(lists, "/Library"), position);
    EXPECT_EQ(windowPoint(position).x, x);
    EXPECT_EQ(windowPoint(position).y, 100.0);
  };
  at(DockPosition::bottom, 10);
  auto& dock = lists.files["com.apple.dock.plist"];
  at(DockPosition::bottom, 10);
  const std::tuple<PropertyListValue, DockPosition, double> rows[] = {
      {text("bottom"), DockPosition::bottom, 10},
      {text("left"), DockPosition::left, 40},
      {text("right"), DockPosition::right, 10},
      {text("Left"), DockPosition::right, 10},
      {number(1), DockPosition::bottom, 10}};
  for (const auto& [orientation, position, x] : rows) {
    dock["orientation"] = orientation;
    at(position, x);
  }
}

}  // namespace
}  // namespace corvane
