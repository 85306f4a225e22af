#include "schedule/QSCrontabModifier.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "process/Files.h"
#include "tests/support/PrivateCrontab.h"

namespace corvane {
namespace {

using testing::ElementsAre;

const std::string kOurs = "30 2 * * * \"/Apps/BackupEngine.app/BackupEngine\"\n";
const std::string kOthers = "# Entwürfe – 夜 😀\nMAILTO=anna\n5 4 * * * " + std::string(890, 'x') + "\n";

class QSCrontabModifierTest : public testing::Test {
 protected:
  QSCrontabModifierTest() { modifier.setScriptName("BackupEngine.app"); }
  void SetUp() override {
    if (!crontab.problem().empty()) GTEST_SKIP() << crontab.problem();
  }
  [[nodiscard]] std::string staged() const {
    return home.read("Library/Application Support/Quillon/crontab");
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
  const std::pair<std::string, std::string> cases[] = {
      {kOthers, kOthers},
      {kOurs, "\n"},
      {kOurs + kOthers, "\n" + kOthers},
      {"MAILTO=bob\n" + kOurs + kOthers, "MAILTO=bob\n" + kOthers},
      {kOthers + kOurs, kOthers},
      {"# \xE4 in Latin-1\n" + kOurs + kOthers, "# \xE4 in Latin-1\n" + kOthers}};
  for (const auto& [before, after] : cases) {
    crontab.install(before);
    EXPECT_TRUE(modifier.removeCronJob());
    EXPECT_EQ(crontab.list(), after);
    EXPECT_EQ(staged(), after);
  }
  EXPECT_THAT(alerts, ElementsAre());
  struct stat status {};
  ASSERT_EQ(::stat(home.path("Library/Application Support/Quillon/crontab").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600U);
}

TEST_F(QSCrontabModifierTest, ANewJobTakesThePlaceOfTheOldOne) {
  crontab.install("# one\n\n" + kOurs + "# two\n");
  EXPECT_TRUE(modifier.checkForJob("# two"));
  EXPECT_FALSE(modifier.checkForJob("# Two"));
  const std::string job = "0 3 * * * /Apps/BackupEngine.app/BackupEngine\n";
  EXPECT_TRUE(modifier.addCronJob(job));
  EXPECT_EQ(crontab.list(), job + "# one\n# two\n");
}

// A folder that is not empty stands where the file is to be written.
TEST_F(QSCrontabModifierTest, AFileThatCannotBeWrittenStopsInSilence) {
  crontab.install(kOurs);
  home.makeFolder("Library/Application Support/Quillon/crontab/in the way");
  EXPECT_TRUE(modifier.removeCronJob());
  EXPECT_EQ(crontab.list(), kOurs);
  EXPECT_THAT(alerts, ElementsAre());
}

TEST_F(QSCrontabModifierTest, AFailingCommandIsShown) {
  crontab.replaceCommand("[ \"$1\" = -l ] && echo '# kept' && exit 0; exit 1\n");
  EXPECT_TRUE(modifier.removeCronJob());
  EXPECT_TRUE(modifier.addCronJob(kOurs));
  EXPECT_THAT(alerts, ElementsAre("Scheduling Error|Unable to remove schedule.",
                                  "Scheduling Error|Unable to save schedule."));
  EXPECT_EQ(staged(), kOurs + "# kept\n");
}

TEST_F(QSCrontabModifierTest, AListingCutShortIsNotInstalled) {
  crontab.replaceCommand("echo '# the first of many lines'; kill -KILL $$\n");
  modifier.removeCronJob();
  EXPECT_THAT(alerts, ElementsAre("Scheduling Error|Unable to remove schedule."));
  EXPECT_EQ(staged(), "");
}

}  // namespace
}  // namespace corvane
