// The program from outside, as a crontab line starts it on a machine without a display.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "process/Files.h"
#include "process/RunTool.h"
#include "tests/support/WaitFor.h"
#include "tests/system/EngineRun.h"

namespace corvane {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

// Nothing of a run stays behind but its archives, its log and its marker.
void expectCleanedUp(const EngineRun& engine) {
  EXPECT_THAT(namesIn(engine.support()),
              Not(testing::Contains(testing::AnyOf(".corvane.sh", "Contents.plist"))));
  EXPECT_THAT(namesIn(engine.destination()), Not(testing::Contains(".QVB_Backup")));
  EXPECT_EQ(engine.output(), "");
}

class HeadlessRunTest : public testing::Test {
 protected:
  HeadlessRunTest() { engine.configureMail(); }
  ~HeadlessRunTest() override { expectCleanedUp(engine); }

  EngineRun engine;
};

TEST_F(HeadlessRunTest, ArchivesAppleMail) {
  engine.listen();
  engine.startUnder({"/bin/sh", "-c", "umask 0; exec \"$0\""});
  engine.installTool(
      "mv", "cd '" + engine.support() +
                "' && find .corvane.sh Contents.plist .corvane.lock "
                "../../../Logs/Corvane.log \"$1\" ../../../../Backups/.QVB_Backup -maxdepth 0 ! -perm /077 "
                "-printf '%f ' >\"$HOME/private\"\n"
                "exec /usr/bin/mv \"$@\"\n");
  EXPECT_EQ(engine.run(), 0);
  EXPECT_EQ(readTestFile(engine.home() + "/private"),
            ".corvane.sh Contents.plist .corvane.lock Corvane.log corvane.qvb .QVB_Backup ");
  EXPECT_TRUE(waitFor([this] { return engine.announcements() == 1; }, std::chrono::seconds(5)));
  EXPECT_THAT(engine.log(), AllOf(HasSubstr("] Determining Backup Size...\n"),
                                  HasSubstr(": Backup completed successfully.\n")));
  EXPECT_TRUE(fileExists(engine.support() + "/lastbackup"));

  const auto archives = namesIn(engine.destination());
  ASSERT_EQ(archives.size(), 1U);
  EXPECT_THAT(archives[0], testing::EndsWith(".qvb"));
  const std::string out = engine.home() + "/out";
  const std::string archive = engine.destination() + "/" + archives[0];
  ASSERT_EQ(runTool({"/usr/bin/unzip", "-q", archive, "-d", out}).status, 0);
  ASSERT_EQ(runTool({"/usr/bin/unzip", "-q", out + "/Mail/Mail.zip", "-d", out + "/Data"}).status, 0);
  EXPECT_EQ(runTool({"/usr/bin/diff", "-r", engine.library() + "/Mail", out + "/Data"}).output, "");
  EXPECT_EQ(runTool({"/usr/bin/plistutil", "-i", out + "/Contents.plist"}).status, 0);
  EXPECT_THAT(
      readTestFile(out + "/Contents.plist"),
      AllOf(HasSubstr("<?xml"), HasSubstr("<string>Apple Mail</string>"), HasSubstr("<key>Language</key>")));
}

// However a shell starts the engine: what it makes of it is the run's own affair.
TEST(StartTest, DoesNotEndTheRun) {
  const struct {
    const char *commands, *status;
  } rows[] = {{"\"$0\" 2>&-; echo $? >\"$HOME/status\"", "0\n"},
              {"\"$0\" <&- >&- 2>&-; echo $? >\"$HOME/status\"", "0\n"},
              {"mkdir -p \"$HOME/Library/Logs/Corvane.log\"\n"
               "{ \"$0\" 2>&1; echo $? >\"$HOME/status\"; } | head -n 1 >&-; exit 0",
               "0\n"},
              {"( ulimit -f 1; \"$0\" ); echo $? >\"$HOME/status\"", "1\n"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.commands);
    EngineRun engine;
    engine.configureMail();
    engine.startUnder({"/bin/sh", "-c", row.commands});
    EXPECT_EQ(engine.run(), 0);
    EXPECT_EQ(readTestFile(engine.home() + "/status"), row.status);
  }
}

// No configuration here names the application.
TEST(SettingsFilesTest, DecideWhetherTheRunStartsAndFindsItsDestination) {
  const std::string daily = "{ currentConfiguration = Daily; }", old = "{ Destination = \"/tmp\"; }";
  const std::string none = "{ currentConfiguration = \"Corvane is currently not configured.\"; }";
  const char* const unreadable = "] Unable to read preferences file\n";
  const char* const started = "] Destination is available\n";
  const struct {
    std::string usual, lowerCase, configuration;  // bytes; empty for no file
    const char* logged;
  } rows[] = {{"", "", old, unreadable},
              {"", daily, old, started},
              {none, daily, old, "] Corvane is currently not configured.\n"},
              {"<?xml version=\"1.0\"?><plist><dict><key>", "", old, unreadable},
              {"<plist", daily, old, started},
              {none, "", old, "] Unable to start backup due above issue.\n"},
              {daily, "", "", "Config.plist"},
              {daily, "", "{ Destination = " + std::string(100000, '('), "Config.plist"},
              {daily, "", "{ Destination = (\"/tmp\"); }", "Config.plist"},
              {daily, "", old, started}};
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    EngineRun engine;
    removeFile(engine.preferences());
    const auto write = [](const std::string& path, const std::string& bytes) {
      if (!bytes.empty()) writeTestFile(path, bytes);
    };
    write(engine.preferences(), row.usual);
    write(engine.library() + "/Preferences/com.quillon.corvane.plist", row.lowerCase);
    write(engine.configuration(), row.configuration);
    const bool succeeds = row.logged == started;
    EXPECT_EQ(engine.run(), succeeds ? 0 : 1);
    EXPECT_THAT(engine.log(),
                AllOf(HasSubstr(row.logged), HasSubstr(succeeds ? "] Answer: Continue Backup\n" : "")));
    expectCleanedUp(engine);
  }
}

}  // namespace
}  // namespace corvane
