#include "app/ProgressMonitor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <limits>

#include "app/FolderSize.h"
#include "process/Files.h"
#include "tests/support/RecordingPorts.h"
#include "tests/support/ScratchFolder.h"

namespace corvane {
namespace {

using testing::ElementsAre;

class ProgressMonitorTest : public testing::Test {
 protected:
  ProgressMonitorTest() {
    record.mailSizeTempFolder = home.path() + "/copy";
    makeFolders(record.mailSizeTempFolder);
  }

  // Random enough that no file system packs it away.
  void grow(const std::string& name, std::size_t kilobytes) {
    std::ofstream file(home.path() + name, std::ios::binary | std::ios::app);
    for (std::size_t i = 0; i < kilobytes * 1024; ++i) file.put(static_cast<char>(i * i >> 7));
  }
  // The percentage that the next look gives.
  [[nodiscard]] double look() {
    ports.events.clear();
    runLoop.fireUntilStopped(1);
    return ports.events.size() == 1 && ports.events[0].starts_with("percentage ")
               ? std::stod(ports.events[0].substr(11))
               : -1;
  }

  ScratchFolder home;
  RunRecord record;
  RecordingPorts ports;
  ManualRunLoop runLoop;
  ProgressMonitor monitor{ports, runLoop, record, home.path() + "/Mail"};
};

TEST_F(ProgressMonitorTest, FollowsAGrowingCopyUntilItVanishes) {
  makeFolders(home.path() + "/Mail");
  grow("/Mail/messages", 1000);
  monitor.getMailFolderSize();
  EXPECT_GT(monitor.mailFolderSize(), 900.0F);

  EXPECT_FALSE(monitor.mailCheckStarted());
  monitor.startMailFolderCheckAtDestination();
  EXPECT_TRUE(monitor.mailCheckStarted());
  EXPECT_EQ(runLoop.interval, 5.0);
  EXPECT_THAT(ports.events, ElementsAre("show percentage"));
  EXPECT_LT(look(), 10);
  grow("/copy/half", 500);
  EXPECT_NEAR(look(), 50, 5);
  grow("/copy/more", 1500);
  EXPECT_GT(look(), 150);

  removeTree(record.mailSizeTempFolder);
  ports.events.clear();
  runLoop.fireUntilStopped(1);
  EXPECT_THAT(ports.events, ElementsAre("start activity"));
  EXPECT_FALSE(runLoop.isTimerRunning());
}

TEST_F(ProgressMonitorTest, AnUnmeasuredMailFolderGivesAnInfinitePercentage) {
  monitor.getMailFolderSize();  // there is none
  EXPECT_EQ(monitor.mailFolderSize(), 0.0F);
  grow("/copy/something", 100);
  monitor.startMailFolderCheckAtDestination();
  EXPECT_TRUE(std::isinf(look()));
}

TEST(FolderSize, IsWhatStandsBeforeTheFirstTab) {
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
}

TEST(FolderSize, PercentageIsPassedOnWhateverItIs) {
  EXPECT_EQ(percentageOf(3.0F, 2.0F), 150.0);
  EXPECT_EQ(percentageOf(1.0F, 3.0F), 33.3333358764648438);  // the 32-bit neighbour of a third of 100
  EXPECT_EQ(percentageOf(5.0F, -1.0F), -500.0);
  EXPECT_EQ(percentageOf(5.0F, 0.0F), std::numeric_limits<double>::infinity());
  EXPECT_TRUE(std::isnan(percentageOf(0.0F, 0.0F)));
}

TEST_F(ProgressMonitorTest, StartedTwiceIsStopped) {
  monitor.startMailFolderCheckAtDestination();
  monitor.startMailFolderCheckAtDestination();
  EXPECT_FALSE(runLoop.isTimerRunning());
  EXPECT_THAT(ports.events, ElementsAre("show percentage"));
}

}  // namespace
}  // namespace corvane
