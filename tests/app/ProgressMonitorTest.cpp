#include "app/ProgressMonitor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

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

TEST_F(ProgressMonitorTest, StartedTwiceIsStopped) {
  monitor.startMailFolderCheckAtDestination();
  monitor.startMailFolderCheckAtDestination();
  EXPECT_FALSE(runLoop.isTimerRunning());
  EXPECT_THAT(ports.events, ElementsAre("show percentage"));
}

}  // namespace
}  // namespace corvane
