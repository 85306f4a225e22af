#include "schedule/QSCrontabModifier.h"

#include <gmock/gmock.h>

#include "process/Files.h"
#include "tests/support/PrivateCrontab.h"
#include "tests/support/StandardError.h"

namespace corvane {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

const std::string kOthers = "# Entwürfe – 夜 😀\nMAILTO=anna\n5 4 * * * " + std::string(890, 'x') + "\n";

class QSCrontabModifierTest : public testing::Test {
 protected:
  QSCrontabModifierTest() { modifier.setScriptName("BackupEngine.app"); }
  void SetUp() override {
    if (!crontab.problem().empty()) GTEST_SKIP() << crontab.problem();
  }
  PrivateCrontab crontab;
  ScratchFolder home;
  std::vector<std::string> alerts;
  QSCrontabModifier modifier{home.path(), [this](const std::string& message, const std::string& information) {
                               alerts.push_back(message + "|" + information);
                             }};
};

TEST_F(QSCrontabModifierTest, TakesOutTheJobAndNothingElse) {
  ASSERT_EQ(crontab.list(), "none");
  modifier.removeCronJob();
  EXPECT_EQ(crontab.list(), "");
  const std::string staged = home.path("Library/Application Support/Quillon/crontab");
  const std::pair<std::string, std::string> cases[] = {
      {kOthers, kOthers},
      {kOurs + kOthers, "\n" + kOthers},
      {"MAILTO=bob\n" + kOurs + kOthers, "MAILTO=bob\n" + kOthers},
      {"# \xE4 in Latin-1\n" + kOurs + kOthers, "# \xE4 in Latin-1\n" + kOthers}};
  for (const auto& [before, after] : cases) {
    crontab.install(before);
    EXPECT_TRUE(modifier.removeCronJob());
    EXPECT_EQ(crontab.list(), after);
    EXPECT_EQ(readTestFile(staged), after);
  }
  EXPECT_THAT(alerts, ElementsAre());
  EXPECT_EQ(std::filesystem::status(staged).permissions(), std::filesystem::perms(0600));
}

TEST_F(QSCrontabModifierTest, ANewJobTakesThePlaceOfTheOldOne) {
  crontab.install("# one\n\n" + kOurs + "# two\n");
  EXPECT_TRUE(modifier.checkForJob("# two"));
  EXPECT_FALSE(modifier.checkForJob("# Two"));
  const std::string job = "0 3 * * * /Apps/BackupEngine.app/BackupEngine\n";
  EXPECT_TRUE(modifier.addCronJob(job));
  EXPECT_EQ(crontab.list(), job + "# one\n# two\n");
}

// In the end a folder that is not empty stands where the file is to be written.
TEST_F(QSCrontabModifierTest, WhatCannotBeEncodedOrWrittenIsOnlyLogged) {
  const StandardError log;
  crontab.install("# é\n" + kOurs);
  EXPECT_TRUE(modifier.addCronJob("\xE4\n"));
  ::setenv("LC_ALL", "C", 1);
  modifier.addCronJob("# a\n");
  ::unsetenv("LC_ALL");
  home.makeFolder("Library/Application Support/Quillon/crontab/in the way");
  EXPECT_TRUE(modifier.removeCronJob());
  EXPECT_THAT(log.text(), AllOf(HasSubstr("not UTF-8"), HasSubstr("crontab: its encoding lacks"),
                                HasSubstr("crontab: Is a directory")));
  EXPECT_EQ(crontab.list(), "# é\n" + kOurs);
  EXPECT_THAT(alerts, ElementsAre());
  crontab.replaceCommand("exit 1\n");
  modifier.addCronJob(kOurs);
  EXPECT_THAT(alerts, ElementsAre("Scheduling Error|Unable to save schedule."));
}

// A stand-in for the tool copies what it is given to install.
TEST(CrontabTool, IsGivenOnlyWhatItListedForCertain) {
  const struct {
    const char *listing, *installed, *sentence;  // what becomes the crontab, if anything; what is logged
  } cases[] = {
      {"echo 'no crontab for anna' >&2; exit 1", "", ""},
      {"echo 'crontab: no crontab for anna'; exit 1", "", ""},
      {"echo '# says crontab: no crontab'", "# says crontab: no crontab\n", ""},
      {"echo 'Input/output error' >&2; exit 1", nullptr, "the crontab: exit status 1: Input/output error"},
      {"echo '# crontab: no crontab'; echo 'no room' >&2; exit 1", nullptr, "exit status 1: no room\n"},
      {"echo '# the first'; kill -KILL $$", nullptr, "exit status 137"},
      {"head -c 70000000 /dev/zero", nullptr, "exit status 0 and cut short"},
      // [0,18) goes first, [18,37) is then the last two of 20 units.
      {"echo '1 BackupEngine.app'; echo '2 BackupEngine.app'", "\n2 BackupEngine.ap", "in 2 lines"}};
  for (const auto& [listing, installed, sentence] : cases) {
    const StandardError log;
    const ScratchFolder home;
    std::string alert;
    const auto tool = home.writeScript(
        "tool", "[ $1 = -l ] || exec cp \"$1\" " + home.path("installed") + "\n" + listing + "\n");
    QSCrontabModifier modifier(
        home.path(), [&](const auto&, const auto& text) { alert = text; }, tool);
    modifier.setScriptName("BackupEngine.app");
    modifier.removeCronJob();
    EXPECT_EQ(fileExists(home.path("installed")), installed != nullptr) << listing;
    EXPECT_EQ(home.read("installed"), installed ? installed : "");
    EXPECT_EQ(alert, installed ? "" : "Unable to remove schedule.");
    EXPECT_THAT(log.text(), HasSubstr(sentence));
  }
}

}  // namespace
}  // namespace corvane
