#include "app/BackupConfiguration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

struct IntegerCase {
  PropertyListValue value;
  int expected;
};

class IntegerTest : public testing::TestWithParam<IntegerCase> {};

TEST_P(IntegerTest, ReadsWhatLooksLikeANumber) {
  std::string problem;
  const auto configuration =
      configurationFrom({{"Language", GetParam().value}, {"Number Of Backups", GetParam().value}}, problem);
  ASSERT_TRUE(configuration) << problem;
  EXPECT_EQ(configuration->script.language, GetParam().expected);
  EXPECT_EQ(configuration->script.numberOfBackups, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Values, IntegerTest,
                         testing::Values(IntegerCase{number(3), 3}, IntegerCase{number(-3), -3},
                                         IntegerCase{number(1LL << 40), 2147483647},
                                         IntegerCase{{-1e300}, -2147483647 - 1}, IntegerCase{{2.9}, 2},
                                         IntegerCase{{std::nan("")}, 0}, IntegerCase{{true}, 1},
                                         IntegerCase{text(" 12 apples"), 12}, IntegerCase{text("none"), 0},
                                         IntegerCase{text("99999999999999999999"), 2147483647}));

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

struct WrongTypeCase {
  const char* key;
  PropertyListValue value;
};

class WrongTypeTest : public testing::TestWithParam<WrongTypeCase> {};

TEST_P(WrongTypeTest, MakesTheFileUnusableAndNamesTheKey) {
  std::string problem;
  EXPECT_FALSE(configurationFrom({{GetParam().key, GetParam().value}}, problem));
  EXPECT_THAT(problem, HasSubstr(GetParam().key));
}

INSTANTIATE_TEST_SUITE_P(Keys, WrongTypeTest,
                         testing::Values(WrongTypeCase{"Destination", number(1)},
                                         WrongTypeCase{"Destination", {std::string("/a\0b", 4)}},
                                         WrongTypeCase{"App Location", {Dictionary{}}},
                                         WrongTypeCase{"Clients", text("Apple Mail")},
                                         WrongTypeCase{"Clients", {PropertyListValue::Array{number(1)}}},
                                         WrongTypeCase{"Number Of Backups", {PropertyListValue::Array{}}},
                                         WrongTypeCase{"Automount", text("afp")},
                                         WrongTypeCase{"Automount", {Dictionary{{"Password", number(1)}}}}));

TEST(ConfigurationTest, AnUnusableFileCountsAsAnEmptyOne) {
  MemoryPropertyLists lists;
  lists.files["Config.plist"] = {{"Destination", text("/Backups")}, {"Clients", text("Apple Mail")}};
  EXPECT_EQ(readConfiguration(lists, "/Support").script.destination, "");
}

}  // namespace
}  // namespace corvane
