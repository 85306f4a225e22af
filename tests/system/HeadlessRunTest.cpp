// The program from outside, as a crontab line starts it on a machine without a display.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

#include "process/Files.h"
#include "process/RunTool.h"
#include "tests/support/WaitFor.h"
#include "tests/system/EngineRun.h"

namespace corvane {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class HeadlessRunTest : public testing::Test {
 protected:
  // Nothing of a run stays behind but its archives, its log and its marker.
  void expectCleanedUp() {
    EXPECT_THAT(namesIn(engine.support()), Not(testing::Contains(".corvane.sh")));
    EXPECT_THAT(namesIn(engine.support()), Not(testing::Contains("Contents.plist")));
    EXPECT_THAT(namesIn(engine.destination()), Not(testing::Contains(".QVB_Backup")));
    EXPECT_EQ(engine.output(), "");
  }

  EngineRun engine;
};

TEST_F(HeadlessRunTest, ArchivesAppleMail) {
  engine.configureMail();
  engine.listen();
  EXPECT_EQ(engine.run(), 0);
  EXPECT_TRUE(waitFor([this] { return engine.announcements() == 1; }, std::chrono::seconds(5)));
  EXPECT_THAT(
      engine.log(),
      AllOf(HasSubstr("] Determining Backup Size...\n"), HasSubstr("] Backing up Mail...\n"),
            HasSubstr("] Compressing Backup files\n"), HasSubstr(": Backup completed successfully.\n")));
  expectCleanedUp();
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

TEST_F(HeadlessRunTest, AnOlderArchiveSurvivesAFailingDitto) {
  engine.configureMail();
  writeTestFile(engine.destination() + "/older.qvb", "older");
  engine.installTool("ditto", "case $1 in -c*) echo ditto: no space left; exit 1;; esac\n");
  EXPECT_EQ(engine.run(), 1);
  EXPECT_THAT(engine.log(), AllOf(HasSubstr("ditto: no space left"), HasSubstr(": Backup failed."),
                                  HasSubstr("] Cleaning up after failed Backup\n")));
  EXPECT_THAT(namesIn(engine.destination()), testing::ElementsAre("older.qvb"));
  EXPECT_FALSE(fileExists(engine.support() + "/lastbackup"));
  expectCleanedUp();
}

TEST_F(HeadlessRunTest, AScriptThatDiesIsAFailure) {
  engine.configureMail();
  engine.installTool("ditto", "kill -KILL $PPID\n");
  EXPECT_EQ(engine.run(), 1);
  EXPECT_THAT(engine.log(), Not(HasSubstr("Backup completed")));
  expectCleanedUp();
}

TEST_F(HeadlessRunTest, TheEndFromOutsideEndsTheScriptToo) {
  engine.configureMail();
  engine.installTool("ditto", "[ $1 != -ckX ] || { echo $$ > \"$HOME/ditto.pid\"; exec sleep 1000; }\n");
  engine.start();
  const std::string pidFile = engine.home() + "/ditto.pid";
  ASSERT_TRUE(waitFor([&] { return readTestFile(pidFile).ends_with('\n'); }, std::chrono::seconds(20)));
  const pid_t ditto = std::stoi(readTestFile(pidFile));
  ASSERT_EQ(::kill(engine.pid(), SIGTERM), 0);
  EXPECT_EQ(engine.exitStatus(), 1);
  EXPECT_TRUE(waitFor([&] { return ::kill(ditto, 0) != 0; }, std::chrono::seconds(5)));
  expectCleanedUp();
}

// The first `ditto` of the script stands for everything that a tool can do to the output.
struct ToolOutputCase {
  const char* name;
  const char* tool;
  int status;
};

class ToolOutputTest : public HeadlessRunTest, public testing::WithParamInterface<ToolOutputCase> {};

TEST_P(ToolOutputTest, IsJudgedByItsLastShownChunk) {
  engine.configureMail();
  engine.installTool("ditto", GetParam().tool);
  EXPECT_EQ(engine.run(), GetParam().status);
  // The script dies before it can tidy up; the engine does so after a failure only.
  const bool tidy = !fileExists(engine.destination() + "/.QVB_Backup");
  EXPECT_EQ(tidy, GetParam().status != 0);
}

INSTANTIATE_TEST_SUITE_P(
    Tools, ToolOutputTest,
    testing::Values(
        // The pause makes two reads of one sentence.
        ToolOutputCase{
            "SplitSentence",
            "printf 'Backup completed succ'; sleep 0.5; printf 'essfully.'; sleep 0.5; kill -KILL $PPID\n",
            1},
        ToolOutputCase{"SentenceThenLoaderNoise",
                       "printf 'Backup completed successfully'; sleep 0.5; printf 'dyld: noise'; sleep 0.5\n"
                       "kill -KILL $PPID\n",
                       0}),
    [](const auto& test) { return test.param.name; });

struct PreferencesCase {
  const char* name;
  const char* usual;      // bytes of the file in the usual spelling; null for none
  const char* lowerCase;  // of the lower-case one
  int status;
  const char* logged;
};

class PreferencesFileTest : public HeadlessRunTest, public testing::WithParamInterface<PreferencesCase> {};

TEST_P(PreferencesFileTest, DecideWhetherTheRunStarts) {
  engine.configure("");
  removeFile(engine.preferences());
  if (GetParam().usual) writeTestFile(engine.preferences(), GetParam().usual);
  if (GetParam().lowerCase) {
    writeTestFile(engine.library() + "/Preferences/com.quillon.corvane.plist", GetParam().lowerCase);
  }
  EXPECT_EQ(engine.run(), GetParam().status);
  EXPECT_THAT(engine.log(), HasSubstr(GetParam().logged));
  expectCleanedUp();
}

constexpr const char* kSound = "{ currentConfiguration = Daily; }";
constexpr const char* kNone = "{ currentConfiguration = \"Corvane is currently not configured.\"; }";
constexpr const char* kUnreadable = "] Unable to read preferences file\n";

INSTANTIATE_TEST_SUITE_P(
    Files, PreferencesFileTest,
    testing::Values(
        PreferencesCase{"Missing", nullptr, nullptr, 1, kUnreadable},
        PreferencesCase{"LowerCaseOnly", nullptr, kSound, 0, "] Backup Starting...\n"},
        PreferencesCase{"BothFirstCounts", kNone, kSound, 1, "] Corvane is currently not configured.\n"},
        PreferencesCase{"Unreadable", "<?xml version=\"1.0\"?><plist><dict><key>", nullptr, 1, kUnreadable},
        PreferencesCase{"UnreadableThenLowerCase", "", kSound, 0, "] Backup Starting...\n"},
        PreferencesCase{"NotConfigured", kNone, nullptr, 1, "] Unable to start backup due above issue.\n"}),
    [](const auto& test) { return test.param.name; });

struct ConfigurationCase {
  const char* name;
  std::string bytes;  // empty for no file
  int status;
};

class ConfigurationFileTest : public HeadlessRunTest,
                              public testing::WithParamInterface<ConfigurationCase> {};

TEST_P(ConfigurationFileTest, DecidesWhetherThereIsADestination) {
  removeFile(engine.configuration());
  if (!GetParam().bytes.empty()) writeTestFile(engine.configuration(), GetParam().bytes);
  EXPECT_EQ(engine.run(), GetParam().status);
  EXPECT_THAT(engine.log(), HasSubstr("] Answer: Continue Backup\n"));  // no file names the application
  const bool started = GetParam().status == 0;
  EXPECT_THAT(engine.log(), HasSubstr(started ? "] Destination is available\n" : "Config.plist"));
  expectCleanedUp();
}

// {"Destination": "/tmp"} as a binary property list.
const std::string kBinary(
    "bplist00\xD1\x01\x02[DestinationT/tmp\x08\x0B\x17\x00\x00\x00\x00\x00\x00\x01"
    "\x01\x00\x00\x00\x00\x00\x00\x00\x03\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00"
    "\x00\x00\x00\x00\x1C",
    63);

INSTANTIATE_TEST_SUITE_P(
    Files, ConfigurationFileTest,
    testing::Values(ConfigurationCase{"Missing", "", 1}, ConfigurationCase{"Malformed", "<plist><dict>", 1},
                    ConfigurationCase{"Deep", "{ Destination = " + std::string(100000, '('), 1},
                    ConfigurationCase{"WrongType", "{ Destination = (\"/tmp\"); }", 1},
                    ConfigurationCase{"OldStyleText", "{ Destination = \"/tmp\"; }", 0},
                    ConfigurationCase{"Binary", kBinary, 0}),
    [](const auto& test) { return test.param.name; });

TEST_F(HeadlessRunTest, AMountedVolumeThatIsMissingFailsTheRun) {
  engine.configure("<key>Automount</key><dict><key>Path</key><string>corvane-no-such-volume</string></dict>");
  EXPECT_EQ(engine.run(), 1);
  EXPECT_THAT(engine.log(), HasSubstr("] Server based destination is not available\n"));
}

}  // namespace
}  // namespace corvane
