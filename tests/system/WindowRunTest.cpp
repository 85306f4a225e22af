// The program from outside, with its window on a virtual display and a user who presses buttons.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <X11/keysym.h>
#include <csignal>
#include <functional>

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

// The window is attached to (10, 100): its body begins 18 points to the right and 18 points below, the
// arrow's strip and inset, and the view 2 points inside it. Both buttons are 22 points above the view's lower
// edge.
struct Place {
  int x, y;
};
constexpr Place kCancel{10 + 18 + 316, 100 - 18 + 2 + 22}, kOpenLog{10 + 18 + 216, 100 - 18 + 2 + 22};

// Between the border of its body and its view nothing is drawn but the window's own grey.
constexpr Place kBody{34, 88};
constexpr int kEmpty = 128;  // the grey of a screen as the compositor paints it

class WindowRunTest : public testing::Test {
 protected:
  WindowRunTest() : screen(display.name()) {}

  // Presses until `hasNoticed`: the first press may come before the window is served.
  void pressUntil(Place button, const std::function<bool()>& hasNoticed) {
    int attempts = 10;
    do {
      screen.click(button.x, button.y);
    } while (!hasNoticed() && --attempts > 0);
    EXPECT_GT(attempts, 0);
  }
  void pressUntilEnd(Place button, int status) {
    pressUntil(button, [&] { return engine.exitStatus(2s) == status; });
  }
  void pressUntilLogged(Place button, const char* text) {
    pressUntil(button, [&] { return engine.logs(text, 2s); });
  }
  [[nodiscard]] Pixel pixel(Place place) const { return screen.pixel(place.x, place.y); }
  // The window waits for its user.
  void failAndWait() {
    engine.configureMail();
    engine.installTool("ditto", "exit 1\n");
    engine.start(display.name());
    ASSERT_TRUE(engine.logs("] Cleaning up after failed Backup\n"));
    ASSERT_FALSE(engine.exitStatus(1s));
  }

  // Whether there is writing between two columns in the line of the status, which is 44 to 60 points above
  // the view's lower edge.
  [[nodiscard]] bool isWrittenBetween(int left, int right) const {
    for (int at = 0; at < 16 * (right - left); ++at) {
      if (screen.pixel(left + at / 16, 100 - 18 + 2 + 44 + at % 16).red < 130) return true;
    }
    return false;
  }

  VirtualDisplay display;
  XScreen screen;
  EngineRun engine;
};

TEST_F(WindowRunTest, ASuccessfulRunFadesOutByItself) {
  ASSERT_TRUE(display.startCompositor());
  engine.configureMail();
  engine.start(display.name());
  ASSERT_TRUE(waitFor([&] { return pixel(kBody).red > 220; }, 20s));
  const auto fading = [&] {
    const int grey = pixel(kBody).red;
    return grey < 200 && grey > kEmpty + 10;
  };
  EXPECT_TRUE(waitFor(fading, 20s));
  EXPECT_EQ(engine.exitStatus(), 0);
  EXPECT_EQ(pixel(kBody).red, kEmpty);
  EXPECT_THAT(engine.log(), HasSubstr(": Backup completed successfully.\n"));
  EXPECT_EQ(engine.output(), "");
}

TEST_F(WindowRunTest, CancelEndsAllThatTheScriptStarted) {
  ASSERT_TRUE(display.startCompositor());
  engine.configureMail();
  engine.installTool("ditto", R"(case $1 in -c*) echo $$ >"$HOME/pid"
echo Copying /Users/anna/Library/Mail/V9/MailData/Archive.mbox/Attachments/Holidays/Photographs.zip
exec sleep 1000;; esac
)");
  engine.listen();
  engine.start(display.name());
  const pid_t ditto = engine.toolsProcess();
  // The field of the status ends 362 points from the view's left edge, and the view after 380.
  EXPECT_TRUE(waitFor([this] { return isWrittenBetween(28 + 346, 28 + 362); })) << "it is to use its room";
  EXPECT_FALSE(isWrittenBetween(28 + 362, 28 + 380));
  EXPECT_TRUE(screen.save("running"));
  pressUntilLogged(kCancel, "] User: Cancelling Backup\n");
  EXPECT_EQ(engine.exitStatus(), 1);
  EXPECT_TRUE(waitFor([&] { return ::kill(ditto, 0) != 0; }, 5s));
  EXPECT_TRUE(waitFor([this] { return engine.announcements() == 2; }, 5s));
  EXPECT_THAT(engine.log(), HasSubstr("] Cleaning up after Cancelled Backup\n"));
  EXPECT_FALSE(fileExists(engine.destination() + "/.QVB_Backup"));
  EXPECT_FALSE(fileExists(engine.support() + "/.corvane.sh"));
}

TEST_F(WindowRunTest, OpenLogReturnAndCancelLeaveAFailedRun) {
  failAndWait();
  pressUntilEnd(kOpenLog, 1);
  failAndWait();
  pressUntil(kBody, [this] {
    screen.type(XK_Return);
    return engine.exitStatus(2s) == 1;
  });
  EXPECT_THAT(engine.log(), Not(HasSubstr("User: Cancelling Backup")));
  ASSERT_TRUE(display.startCompositor());
  failAndWait();
  EXPECT_TRUE(screen.save("had-errors"));
  pressUntilLogged(kCancel, "Cleaning up after Cancelled Backup\n");
  EXPECT_EQ(engine.exitStatus(), 1);
}

TEST_F(WindowRunTest, AMissingDestinationWaitsForEscape) {
  writeTestFile(engine.configuration(), xmlPropertyList("<key>App Location</key><string>/</string>"));
  const auto usersWindow = screen.focus();
  engine.start(display.name());
  ASSERT_TRUE(engine.logs("] Checking backup destination...\n"));
  screen.type(XK_Escape);  // meant for the user's application
  ASSERT_FALSE(engine.exitStatus(1s));
  EXPECT_EQ(screen.focus(), usersWindow);
  EXPECT_TRUE(screen.save("failed"));
  pressUntil(kBody, [this] {
    screen.type(XK_Escape);
    return engine.logs("] User: Cancelling Backup\n", 2s);
  });
  EXPECT_EQ(engine.exitStatus(), 1);
}

// The companion is gone. The alert stands in the middle of the screen, which is 1024 points wide and 640
// high.
constexpr Place kUninstall{740, 231}, kContinue{620, 231}, kAlertsGrey{400, 231}, kBar{100, 173};
constexpr Place kOk{645, 248};  // of the message about the schedule

class AlertRunTest : public WindowRunTest {
 protected:
  void SetUp() override {
    if (!crontab.problem().empty()) GTEST_SKIP() << crontab.problem();
    crontab.install("# one\n" + kOurs + "# two\n");
    writeTestFile(engine.configuration(),
                  xmlPropertyList("<key>Destination</key><string>" + engine.destination() + "</string>"));
  }
  void startAndBeAsked() {
    engine.listen();
    engine.start(display.name());
    ASSERT_TRUE(engine.logs("] Missing Corvane?\n"));
  }
  [[nodiscard]] std::string quillon() const { return engine.library() + "/Application Support/Quillon"; }
  [[nodiscard]] std::string trash() const { return engine.home() + "/.local/share/Trash"; }
  void expectInTrash() {
    EXPECT_THAT(namesIn(trash() + "/files"), ElementsAre("Corvane"));
    EXPECT_THAT(namesIn(trash() + "/files/Corvane"), testing::Contains("Config.plist"));
    EXPECT_THAT(readTestFile(trash() + "/info/Corvane.trashinfo"),
                HasSubstr("\nPath=" + engine.home() + "/Library/Application%20Support/Quillon/Corvane\n"));
  }

  PrivateCrontab crontab;
};

TEST_F(AlertRunTest, UninstallTakesAwayTheScheduleAndTheFolder) {
  writeTestFile(quillon() + "/Other/Config.plist", "other");
  startAndBeAsked();
  pressUntilEnd(kUninstall, 0);
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
  pressUntilLogged(kUninstall, "list the crontab: exit status 1");
  EXPECT_FALSE(engine.exitStatus(1s)) << "it must wait for its user";
  EXPECT_FALSE(fileExists(trash()));
  pressUntilEnd(kOk, 0);
  expectInTrash();
}

TEST_F(AlertRunTest, ContinueRunsTheBackup) {
  startAndBeAsked();
  ASSERT_TRUE(waitFor([this] { return pixel(kAlertsGrey).red > 200; }));
  const Pixel before = pixel(kBar);
  EXPECT_TRUE(waitFor([&] { return pixel(kBar) != before; }, 5s)) << "the bar is to move behind the alert";
  EXPECT_FALSE(engine.exitStatus(1s)) << "it must wait for its user";
  EXPECT_TRUE(screen.save("readying"));
  pressUntilEnd(kContinue, 0);
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
