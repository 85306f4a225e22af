// The program from outside, with its window on a virtual display and a user who presses buttons.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <X11/keysym.h>
#include <fcntl.h>
#include <unistd.h>
#include <csignal>

#include "process/Files.h"
#include "tests/support/VirtualDisplay.h"
#include "tests/support/WaitFor.h"
#include "tests/support/XScreen.h"
#include "tests/system/EngineRun.h"

namespace corvane {
namespace {

using testing::HasSubstr;
using testing::Not;
using namespace std::chrono_literals;

// The window is attached to (10, 100): its body begins 18 points to the right and 18 points below, the
// arrow's strip and inset, and the view 2 points inside it. Both buttons are 22 points above the view's lower
// edge.
struct Button {
  int x;
  int fromBottom;
};
constexpr Button kCancel{10 + 18 + 316, 100 - 18 + 2 + 22};
constexpr Button kOpenLog{10 + 18 + 216, 100 - 18 + 2 + 22};

// Between the border of its body and its view nothing is drawn but the window's own grey.
constexpr int kBodyX = 34;
constexpr int kBodyY = 88;
constexpr Button kBody{kBodyX, kBodyY};
constexpr int kEmpty = 128;  // the grey of a screen as the compositor paints it

class WindowRunTest : public testing::Test {
 protected:
  WindowRunTest() : screen(display.name()) {}

  // As long as a finger takes: shorter presses may reach the program as one event.
  void press(Button button) {
    screen.moveMouse(button.x, button.fromBottom);
    screen.pressMouse(true);
    std::this_thread::sleep_for(150ms);
    screen.pressMouse(false);
  }

  // Presses until the engine has noticed: the first press may come before the window is served.
  [[nodiscard]] bool pressUntilLogged(Button button, const std::string& text) {
    for (int attempt = 0; attempt < 10; ++attempt) {
      press(button);
      if (engine.logs(text, 2s)) return true;
    }
    return false;
  }

  // A `ditto` that says where it is, never ends and leaves its process id behind.
  void installEndlessDitto() {
    engine.installTool("ditto", "case $1 in -c*) echo " + kLongStatus +
                                    "; echo $$ > \"$HOME/ditto.pid\"; exec sleep 1000;; esac\n");
  }

  // Whether there is writing between two columns in the line of the status, which is 44 to 60 points above
  // the view's lower edge.
  [[nodiscard]] bool isWrittenBetween(int left, int right) const {
    for (int at = 0; at < 16 * (right - left); ++at) {
      if (screen.pixel(left + at / 16, 100 - 18 + 2 + 44 + at % 16).red < 130) return true;
    }
    return false;
  }
  const std::string kLongStatus =
      "Copying /Users/anna/Library/Mail/V9/MailData/Archive.mbox/Attachments/Holidays/Photographs.zip";

  VirtualDisplay display;
  XScreen screen;
  EngineRun engine;
};

TEST_F(WindowRunTest, ASuccessfulRunFadesOutByItself) {
  ASSERT_TRUE(display.startCompositor());
  engine.configureMail();
  engine.start(display.name());
  ASSERT_TRUE(waitFor([&] { return screen.pixel(kBodyX, kBodyY).red > 220; }, 20s));
  const auto fading = [&] {
    const int grey = screen.pixel(kBodyX, kBodyY).red;
    return grey < 200 && grey > kEmpty + 10;
  };
  EXPECT_TRUE(waitFor(fading, 20s));
  EXPECT_EQ(engine.exitStatus(), 0);
  EXPECT_EQ(screen.pixel(kBodyX, kBodyY).red, kEmpty);
  EXPECT_THAT(engine.log(), HasSubstr(": Backup completed successfully.\n"));
  EXPECT_EQ(engine.output(), "");
}

TEST_F(WindowRunTest, CancelEndsAllThatTheScriptStarted) {
  ASSERT_TRUE(display.startCompositor());
  engine.configureMail();
  installEndlessDitto();
  engine.listen();
  engine.start(display.name());
  const std::string pidFile = engine.home() + "/ditto.pid";
  ASSERT_TRUE(waitFor([&] { return readTestFile(pidFile).ends_with('\n'); }, 20s));
  const pid_t ditto = std::stoi(readTestFile(pidFile));

  // The field of the status ends 362 points from the view's left edge, and the view after 380.
  EXPECT_TRUE(waitFor([this] { return isWrittenBetween(28 + 346, 28 + 362); })) << "it is to use its room";
  EXPECT_FALSE(isWrittenBetween(28 + 362, 28 + 380));
  EXPECT_TRUE(screen.save("running"));
  EXPECT_TRUE(pressUntilLogged(kCancel, "] User: Cancelling Backup\n"));
  EXPECT_EQ(engine.exitStatus(), 1);
  EXPECT_TRUE(waitFor([&] { return ::kill(ditto, 0) != 0; }, 5s));
  EXPECT_TRUE(waitFor([this] { return engine.announcements() == 2; }, 5s));
  EXPECT_THAT(engine.log(), HasSubstr("] Cleaning up after Cancelled Backup\n"));
  EXPECT_FALSE(fileExists(engine.destination() + "/.QVB_Backup"));
  EXPECT_FALSE(fileExists(engine.support() + "/.corvane.sh"));
}

class FailedRunTest : public WindowRunTest {
 protected:
  void failAndWait() {
    engine.configureMail();
    engine.installTool("ditto", "exit 1\n");
    engine.start(display.name());
    ASSERT_TRUE(engine.logs("] Cleaning up after failed Backup\n"));
    ASSERT_FALSE(engine.exitStatus(1s)) << "the window must wait for its user";
  }
};

TEST_F(FailedRunTest, CancelLeavesIt) {
  ASSERT_TRUE(display.startCompositor());
  failAndWait();
  EXPECT_TRUE(screen.save("had-errors"));
  EXPECT_TRUE(pressUntilLogged(kCancel, "] Cleaning up after Cancelled Backup\n"));
  EXPECT_EQ(engine.exitStatus(), 1);
}

TEST_F(FailedRunTest, OpenLogLeavesIt) {
  failAndWait();
  for (int attempt = 0; attempt < 10 && !engine.exitStatus(2s); ++attempt) press(kOpenLog);
  EXPECT_EQ(engine.exitStatus(), 1);
  failAndWait();
  for (int attempt = 0; attempt < 10 && !engine.exitStatus(2s); ++attempt) {
    press(kBody);
    screen.type(XK_Return);
  }
  EXPECT_EQ(engine.exitStatus(), 1);
  EXPECT_THAT(engine.log(), Not(HasSubstr("User: Cancelling Backup")));
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
  press(kBody);
  EXPECT_TRUE(waitFor(
      [this] {
        screen.type(XK_Escape);
        return engine.logs("] User: Cancelling Backup\n", 1s);
      },
      20s));
  EXPECT_EQ(engine.exitStatus(), 1);
}

}  // namespace
}  // namespace corvane
