// The program from outside when its companion is gone: the question, and what comes of each answer.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <csignal>

#include "process/Files.h"
#include "tests/support/PrivateCrontab.h"
#include "tests/support/VirtualDisplay.h"
#include "tests/support/WaitFor.h"
#include "tests/support/XScreen.h"
#include "tests/system/EngineRun.h"

namespace corvane {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using namespace std::chrono_literals;

// A place on the screen, which is 1024 points wide and 640 high; the alert stands in its middle.
struct Place {
  int x;
  int fromTop;
};
constexpr Place kUninstall{740, 408};
constexpr Place kContinue{620, 408};
constexpr Place kOk{645, 391};  // of the message about the schedule
constexpr Place kAlertsGrey{400, 408};
constexpr Place kBar{100, 466};

class AlertRunTest : public testing::Test {
 protected:
  AlertRunTest() : screen(display.name()) {
    writeTestFile(engine.configuration(),
                  xmlPropertyList("<key>Destination</key><string>" + engine.destination() + "</string>"));
  }
  void SetUp() override {
    if (!crontab.problem().empty()) GTEST_SKIP() << crontab.problem();
    crontab.install("# one\n" + kOurs + "# two\n");
  }

  void startAndBeAsked() {
    engine.listen();
    engine.start(display.name());
    ASSERT_TRUE(engine.logs("] Missing Corvane?\n"));
  }
  // As long as a finger takes, and until `isDone` within two seconds: the alert may not be served yet.
  template <typename Condition>
  [[nodiscard]] bool pressUntil(Place button, Condition isDone) {
    for (int attempt = 0; attempt < 10; ++attempt) {
      screen.moveMouse(button.x, 639 - button.fromTop);
      screen.pressMouse(true);
      std::this_thread::sleep_for(150ms);
      screen.pressMouse(false);
      if (isDone()) return true;
    }
    return false;
  }
  [[nodiscard]] std::optional<int> pressUntilEnd(Place button) {
    static_cast<void>(pressUntil(button, [this] { return engine.exitStatus(2s).has_value(); }));
    return engine.exitStatus(0s);
  }
  [[nodiscard]] Pixel pixel(Place place) const { return screen.pixel(place.x, 639 - place.fromTop); }
  [[nodiscard]] std::string quillon() const { return engine.library() + "/Application Support/Quillon"; }
  [[nodiscard]] std::string trash() const { return engine.home() + "/.local/share/Trash"; }
  void expectInTrash() {
    EXPECT_THAT(namesIn(trash() + "/files"), ElementsAre("Corvane"));
    EXPECT_THAT(namesIn(trash() + "/files/Corvane"), testing::Contains("Config.plist"));
    EXPECT_THAT(readTestFile(trash() + "/info/Corvane.trashinfo"),
                HasSubstr("\nPath=" + engine.home() + "/Library/Application%20Support/Quillon/Corvane\n"));
  }

  PrivateCrontab crontab;
  VirtualDisplay display;
  XScreen screen;
  EngineRun engine;
};

TEST_F(AlertRunTest, UninstallTakesAwayTheScheduleAndTheFolder) {
  writeTestFile(quillon() + "/Other/Config.plist", "other");
  startAndBeAsked();
  EXPECT_EQ(pressUntilEnd(kUninstall), 0);
  EXPECT_EQ(crontab.list(), "# one\n# two\n");
  expectInTrash();
  EXPECT_THAT(namesIn(quillon()), ElementsAre("Other", "crontab"));
  EXPECT_EQ(readTestFile(quillon() + "/Other/Config.plist"), "other");
  EXPECT_THAT(engine.log(), Not(HasSubstr("Backup Starting...")));
  EXPECT_FALSE(waitFor([this] { return engine.announcements() > 0; }, 500ms));
}

TEST_F(AlertRunTest, AScheduleThatCannotBeRemovedIsShownFirst) {
  crontab.replaceCommand("exit 1\n");
  startAndBeAsked();
  EXPECT_TRUE(pressUntil(kUninstall, [this] { return engine.logs("list the crontab: exit status 1", 2s); }));
  EXPECT_FALSE(engine.exitStatus(1s)) << "it must wait for its user";
  EXPECT_FALSE(fileExists(trash()));
  EXPECT_EQ(pressUntilEnd(kOk), 0);
  expectInTrash();
}

TEST_F(AlertRunTest, ContinueRunsTheBackup) {
  startAndBeAsked();
  ASSERT_TRUE(waitFor([this] { return pixel(kAlertsGrey).red > 200; }));
  const Pixel before = pixel(kBar);
  EXPECT_TRUE(waitFor([&] { return pixel(kBar) != before; }, 5s)) << "the bar is to move behind the alert";
  EXPECT_FALSE(engine.exitStatus(1s)) << "it must wait for its user";
  EXPECT_TRUE(screen.save("readying"));
  EXPECT_EQ(pressUntilEnd(kContinue), 0);
  EXPECT_THAT(engine.log(), AllOf(HasSubstr("] Answer: Continue Backup\n"), HasSubstr("Backup completed")));
  EXPECT_EQ(crontab.list(), "# one\n" + kOurs + "# two\n");
  EXPECT_TRUE(waitFor([this] { return engine.announcements() == 1; }, 5s));
}

TEST_F(AlertRunTest, TheEndFromOutsideNeedsNoAnswer) {
  startAndBeAsked();
  ASSERT_EQ(::kill(engine.pid(), SIGTERM), 0);
  EXPECT_EQ(engine.exitStatus(5s), 128 + SIGTERM);
}

}  // namespace
}  // namespace corvane
