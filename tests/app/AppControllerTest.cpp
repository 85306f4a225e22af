// A run, and the watch over its copy of the mail.
#include "app/AppController.h"

#include <gmock/gmock.h>
#include <cmath>
#include <sstream>

#include "app/FolderSize.h"
#include "app/MissingApplication.h"
#include "process/FileLock.h"
#include "process/Files.h"
#include "tests/support/RecordingPorts.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/StandardError.h"

namespace corvane {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using Events = std::vector<std::string>;

constexpr const char* kPost = "post com.quillon.Corvane.executionComplete";

CalendarDate ninthOfMarch() { return {2026, 3, 9}; }

// A run in a scratch home folder. Standard error is put back afterwards: a run takes it over for its log.
struct Machine {
  Machine() {
    lists.files["com.quillon.Corvane.plist"] = {{"currentConfiguration", {std::string("Daily")}}};
    lists.files["Config.plist"] = {{"Destination", {home.path()}}, {"App Location", {home.path()}}};
    makeFolders(support());
  }
  void start() {
    Facts facts;
    facts.homeDirectory = home.path();
    facts.libraryFolder = home.path() + "/Library";
    facts.appSupportFolder = facts.libraryFolder + "/Application Support";
    facts.appKitVersion = 2000;
    controller = std::make_unique<AppController>(
        facts, Ports{ports, ports, ports, ports, ports, runLoop, lists, volumes, ninthOfMarch},
        SystemPlaces{home.path("Corvane.app"), home.path("crontab tool")});
    controller->awakeFromNib();
  }

  // What was asked of the ports since the last call.
  Events eventsSince() { return std::exchange(ports.events, {}); }

  [[nodiscard]] std::string support() const {
    return home.path() + "/Library/Application Support/Quillon/Corvane";
  }
  [[nodiscard]] std::string scriptPath() const { return support() + "/.corvane.sh"; }
  [[nodiscard]] std::string staging() const { return home.path() + "/.QVB_Backup"; }
  [[nodiscard]] std::string log() const { return home.read("Library/Logs/Corvane.log"); }

  const StandardError savedError;
  ScratchFolder home;
  RecordingPorts ports;
  ManualRunLoop runLoop;
  MemoryPropertyLists lists;
  FakeVolumes volumes;
  std::unique_ptr<AppController> controller;
};

class AppControllerTest : public testing::Test, protected Machine {};

TEST_F(AppControllerTest, SuccessFadesOutAndQuits) {
  start();
  EXPECT_THAT(eventsSince(), ElementsAre("headline Readying Corvane...", "open 10,100",
                                         "status Checking backup destination...", "maximum 101",
                                         "headline Backup in Progress..."));
  EXPECT_TRUE(fileExists(scriptPath()));

  runLoop.output("Results of the Corvane:\n");
  runLoop.output("one\n");
  runLoop.output("Now: Backup completed successfully.\nand more\n");
  EXPECT_THAT(eventsSince(),
              ElementsAre("status Results of the Corvane:\n", "status one\n", "advance 1",
                          "status Now: Backup completed successfully.\nand more\n", "advance 1"));
  runLoop.endOfOutput();
  EXPECT_THAT(eventsSince(), ElementsAre(kPost, "stop activity"));
  EXPECT_FALSE(fileExists(scriptPath()));

  EXPECT_DOUBLE_EQ(runLoop.interval, 0.05);
  EXPECT_THAT(runLoop.fireUntilStopped(), testing::AnyOf(11, 12));
  EXPECT_THAT(eventsSince(), ElementsAre("close", "terminate 0"));
  EXPECT_THAT(log(), AllOf(HasSubstr("] Configuring Backup...\n"), HasSubstr("] Backup Starting...\n"),
                           HasSubstr("] one\n")));
}

// Each row is a run of its own: chunks of output, and what the ports are asked, each with a bar at its end.
TEST(AppControllerOutput, IsShownCountedAndJudged) {
  const std::string done = "Backup completed successfully", mail = "----Launch Apple Mail----";
  const struct {
    std::string chunks, events;
    bool succeeds;
  } rows[] = {
      {"Backup completed succ|essfully.\n|",
       "status Backup completed succ|advance 1|status essfully.\n|advance 1|", false},
      {done + "|dyld: noise|", "status " + done + "|advance 1|advance 1|", true},
      {"failed|dyld: " + done + "|", "status failed|advance 1|advance 1|", false},
      {done + "|Shutting Down Mac|", "status " + done + "|advance 1|status Shutting Down Mac|advance 1|",
       false},
      {mail + "\n|Launching\n" + mail + "|", "launch Mail.app|advance 1|launch Mail.app|advance 1|", false},
      {mail + "\n\n" + done + ".\n|", "launch Mail.app|advance 1|status \n" + done + ".\n|advance 1|", true},
      {"Waiting for Mail to quit|Waiting forever|Removing old backup|",
       "status Waiting for Mail to quit|status Waiting forever|advance 1|status Removing old backup|",
       false}};
  for (const auto& row : rows) {
    Machine run;
    run.start();
    run.eventsSince();
    std::istringstream chunks(row.chunks);
    for (std::string chunk; std::getline(chunks, chunk, '|');) run.runLoop.output(chunk);
    std::string events;
    for (const auto& event : run.eventsSince()) events += event + "|";
    EXPECT_EQ(events, row.events);
    run.runLoop.endOfOutput();
    EXPECT_EQ(run.runLoop.isTimerRunning(), row.succeeds) << row.events;
    EXPECT_EQ(testing::Value(run.eventsSince(), testing::Contains("show failure")), !row.succeeds);
  }
}

// A folder that is not empty stands where the script is to be written.
TEST_F(AppControllerTest, AScriptThatCannotBeWrittenIsNotStarted) {
  makeFolders(scriptPath() + "/in the way");
  start();
  EXPECT_THAT(eventsSince(), testing::IsSupersetOf({std::string(kPost), std::string("show failure"),
                                                    std::string("headline Backup had errors")}));
  EXPECT_THAT(log(), HasSubstr("cannot write " + scriptPath()));
}

TEST_F(AppControllerTest, AMissingDestinationOrAPlainFileWaitsForItsUser) {
  lists.files["com.apple.dock.plist"] = {{"orientation", {std::string("left")}}};
  for (const auto& destination : {home.path("missing"), home.write("file", "")}) {
    lists.files["Config.plist"]["Destination"] = {destination};
    start();
    EXPECT_THAT(eventsSince(),
                ElementsAre("headline Readying Corvane...", "open 40,100",
                            "status Checking backup destination...", "headline Backup Failed", "await user"));
    EXPECT_FALSE(fileExists(scriptPath()));

    controller->cancelBackup();
    EXPECT_THAT(eventsSince(), ElementsAre("status Cancelling Backup", kPost));
    runLoop.fireUntilStopped();
    EXPECT_THAT(eventsSince(), ElementsAre("close", "terminate 1"));
  }
}

// An alert that goes away without an answer is no reason to do without a backup.
TEST_F(AppControllerTest, AMissingApplicationIsAskedAboutBeforeTheDestination) {
  lists.files["Config.plist"]["App Location"] = {home.path() + "/moved.app"};
  ports.answer = 2;
  start();
  EXPECT_THAT(eventsSince(), ElementsAre("headline Readying Corvane...", "open 10,100",
                                         "alert Missing Corvane?", "status Checking backup destination...",
                                         "maximum 101", "headline Backup in Progress..."));
  const Alert& alert = ports.alerts.at(0);
  EXPECT_EQ(alert.style, AlertStyle::critical);
  EXPECT_THAT(alert.buttons, ElementsAre("Uninstall", "Continue Backup"));
  EXPECT_THAT(log(), HasSubstr("] No answer\n"));
}

TEST_F(AppControllerTest, AnOpenQuestionLeavesTheNextRunAlone) {
  lists.files["Config.plist"].erase("App Location");
  FileLock nextRun;
  std::string problem;
  ports.whileAsked = [&] {
    EXPECT_EQ(nextRun.acquire(support() + "/.corvane.lock", problem), FileLock::Outcome::acquired);
  };
  start();
  EXPECT_EQ(eventsSince().back(), "terminate 11");
  home.write("Library/Application Support/Quillon/Corvane/.corvane.sh", "the next run's");
  controller->abandon();
  controller->cancelBackup();
  EXPECT_TRUE(fileExists(support() + "/.corvane.sh"));
  EXPECT_THAT(eventsSince(), ElementsAre());
}

TEST(MissingApplication, IsAtNeitherPlace) {
  const std::optional<std::string> none;
  for (const auto& place : {none, std::optional(std::string()), std::optional(std::string("/no/other"))})
    EXPECT_TRUE(isApplicationMissing(place, "/no/such"));
  EXPECT_FALSE(isApplicationMissing("/", "/no/such") || isApplicationMissing(none, "/"));
}

// Apple Mail stages a copy, so there is something to clean up.
class StagingTest : public AppControllerTest {
 protected:
  void startAndStage() {
    lists.files["Config.plist"]["Clients"] = {PropertyListValue::Array{{std::string("Apple Mail")}}};
    start();
    makeFolders(staging() + "/Mail");
  }
};

TEST_F(StagingTest, FailureCleansUpAndOffersTheLog) {
  startAndStage();
  const std::string manifest = support() + "/Contents.plist";
  ASSERT_TRUE(lists.written.contains(manifest));
  EXPECT_EQ(*lists.written[manifest].at("Date").as<std::string>(), "09/03/2026");
  writeTestFile(manifest, "manifest");
  EXPECT_THAT(eventsSince(), testing::IsSupersetOf({"status Determining Backup Size...", "maximum 8"}));

  runLoop.output("Backup failed.");
  eventsSince();
  runLoop.endOfOutput();
  EXPECT_THAT(eventsSince(), ElementsAre(kPost, "stop activity", "show failure", "headline Backup had errors",
                                         "await user"));
  EXPECT_FALSE(fileExists(staging()));
  EXPECT_FALSE(fileExists(manifest));
  controller->displayLogWindow();
  runLoop.fireUntilStopped();
  EXPECT_THAT(eventsSince(), ElementsAre("open Corvane.log with Console.app", "close", "terminate 1"));
}

TEST_F(StagingTest, AWindowThatWaitsLeavesTheNextRunAlone) {
  startAndStage();
  runLoop.endOfOutput();
  const std::string lock = support() + "/.corvane.lock";
  FileLock nextRun;
  std::string problem;
  ASSERT_EQ(nextRun.acquire(lock, problem), FileLock::Outcome::acquired);
  makeFolders(staging());
  controller->cancelBackup();
  EXPECT_TRUE(fileExists(staging()));
  nextRun.release();
  ASSERT_TRUE(removeFile(lock) && makeFolders(lock));  // what cannot be locked is held by nobody
  controller->cancelBackup();
  EXPECT_FALSE(fileExists(staging()));
}

TEST_F(StagingTest, WhatTookANameMeanwhileIsLogged) {
  start();
  home.write(".QVB_Backup", "");
  runLoop.output("Moving Backup file to server volume\n");
  EXPECT_THAT(log(), HasSubstr("] cannot trust " + staging() + ", where"));
}

TEST_F(StagingTest, CancelAnnouncesTheEndTwice) {
  startAndStage();
  eventsSince();
  controller->cancelBackup();
  EXPECT_THAT(eventsSince(), ElementsAre("status Cancelling Backup", kPost, "stop activity", "show failure",
                                         "headline Backup had errors", "await user", kPost));
  EXPECT_FALSE(fileExists(staging()));
  runLoop.endOfOutput();  // a read that was under way when the task was stopped
  EXPECT_THAT(eventsSince(), ElementsAre());
  controller->cancelBackup();  // the user presses it again
  EXPECT_THAT(eventsSince(), ElementsAre("status Cancelling Backup", kPost));
}

// The record holds the staging folder as the shell would be given it.
TEST_F(StagingTest, TheStagingFolderIsFoundBehindItsEscapes) {
  const std::string disk = home.path() + "/Backup Disk";
  const std::string escaped = home.path() + "/Backup\\ Disk";
  for (const auto& folder : {disk + "/.QVB_Backup/Mail", escaped}) makeFolders(folder);
  lists.files["Config.plist"]["Destination"] = {escaped};
  startAndStage();
  runLoop.endOfOutput();
  EXPECT_TRUE(isFolder(disk));
  EXPECT_FALSE(fileExists(disk + "/.QVB_Backup"));
}

// What is measured is random enough that no file system packs it away.
TEST(ProgressMonitor, FollowsAGrowingCopyUntilItVanishes) {
  const ScratchFolder home;
  RunRecord record;
  RecordingPorts ports;
  ManualRunLoop runLoop;
  ProgressMonitor monitor(ports, runLoop, record, home.path("Mail"));
  const auto grow = [&](const std::string& name, std::size_t kilobytes) {
    std::string bytes(kilobytes * 1024, ' ');
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * i >> 7);
    home.write(name, bytes);
  };
  // The percentage that the next look gives.
  const auto look = [&] {
    ports.events.clear();
    runLoop.fireUntilStopped(1);
    return ports.events.size() == 1 && ports.events[0].starts_with("percentage ")
               ? std::stod(ports.events[0].substr(11))
               : -1;
  };
  record.mailSizeTempFolder = home.makeFolder("copy");
  grow("copy/something", 100);
  monitor.getMailFolderSize();  // there is no folder yet
  EXPECT_EQ(monitor.mailFolderSize(), 0.0F);
  EXPECT_FALSE(monitor.mailCheckStarted());
  monitor.startMailFolderCheckAtDestination();
  EXPECT_TRUE(monitor.mailCheckStarted());
  EXPECT_EQ(runLoop.interval, 5.0);
  EXPECT_THAT(ports.events, ElementsAre("show percentage"));
  EXPECT_TRUE(std::isinf(look()));
  monitor.startMailFolderCheckAtDestination();
  EXPECT_FALSE(runLoop.isTimerRunning());

  grow("Mail/messages", 1000);
  monitor.getMailFolderSize();
  EXPECT_GT(monitor.mailFolderSize(), 900.0F);
  monitor.startMailFolderCheckAtDestination();
  EXPECT_NEAR(look(), 10, 3);
  grow("copy/half", 400);
  EXPECT_NEAR(look(), 50, 5);
  grow("copy/more", 1500);
  EXPECT_GT(look(), 150);
  removeTree(record.mailSizeTempFolder);
  ports.events.clear();
  runLoop.fireUntilStopped(1);
  EXPECT_THAT(ports.events, ElementsAre("start activity"));
  EXPECT_FALSE(runLoop.isTimerRunning());
}

TEST(FolderSize, IsWhatStandsBeforeTheFirstTabAndAnyPercentageOfAnother) {
  const std::pair<const char*, std::optional<float>> cases[] = {
      {"1234\t/Mail\n", 1234.0F},
      {" 16777217 \t/a\tb\n", 16777216.0F},  // as near as 24 bits come
      {"-1\t/Mail\n", -1.0F},
      {"du: \"/a\tb\": Permission non accordée\n12\t/\n", 0.0F},
      {"informação\t1\n", 0.0F},
      {"0x1F\t", 0.0F},
      {"\t", 0.0F},
      {"", std::nullopt},
      {"du: Zugriff auf '/Mail' nicht möglich: Datei oder Verzeichnis nicht gefunden\n", std::nullopt}};
  for (const auto& [output, size] : cases) EXPECT_EQ(folderSizeFrom(output), size) << output;
  EXPECT_EQ(percentageOf(1.0F, 3.0F), 33.3333358764648438);  // the 32-bit neighbour of a third of 100
  EXPECT_EQ(percentageOf(5.0F, -1.0F), -500.0);
  EXPECT_TRUE(std::isnan(percentageOf(0.0F, 0.0F)));
}

}  // namespace
}  // namespace corvane
