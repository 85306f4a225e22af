// Runs on words that would be commands, and on tools that say too much, too slowly, or nothing.

#include <sys/mount.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>

#include "process/Files.h"
#include "process/RunTool.h"
#include "tests/support/WaitFor.h"
#include "tests/system/HardeningTest.h"

namespace corvane {
namespace {

struct Word {
  std::string text;
  bool isObeyed;  // between the double quotes of the script
};

const Word kWords[] = {{"$(cd; touch executed)", true},
                       {"`cd; touch executed`", true},
                       {"\"; cd; touch executed; \"", true},
                       {"'; cd; touch executed; '", false},
                       {"\ncd; touch executed\n", false},
                       {std::string(5000, 'a'), false},
                       {"../elsewhere", false},
                       {" -rf", false},
                       {"-rf", false}};

class HostileWordTest : public HardeningTest {
 protected:
  [[nodiscard]] bool executed() const { return fileExists(engine.home() + "/executed"); }

  void prefer(const std::string& filenameTemplate, const std::string& word) {
    writeTestFile(
        engine.preferences(),
        xmlPropertyList("<key>currentConfiguration</key><string>Daily</string><key>filenameTemplate</key>"
                        "<string>" +
                        filenameTemplate + "</string><key>filenameDateFormat</key><string>" + word +
                        "</string><key>entourageAction</key><string>" + word + "</string>"));
  }

  // All that lies where a run has nothing to write.
  [[nodiscard]] std::string elsewhere() const {
    return runTool(
               {"/bin/sh", "-c",
                "cd '" + engine.home() +
                    "' && find . '(' -path ./Backups -o -path ./tmp -o -path ./Library/Logs -o -path "
                    "'./Library/Application Support' -o -name output ')' -prune -o -type d -print -o -ls"})
        .output;
  }
};

TEST_F(HostileWordTest, AreNoCommandsWhereNoneIsMeant) {
  for (const auto& [word, isObeyed] : kWords) {
    SCOPED_TRACE(word.substr(0, 30));
    std::string name = word.substr(0, 200);
    std::replace(name.begin(), name.end(), '/', ':');
    writeTestFile(engine.library() + "/Mail/V9/" + name + ".mbox/" + name, "mail");
    prefer("Daily-(Email Client).qvb", word);
    const std::string text = "<string>" + word + "</string>";
    engine.configure("<key>Clients</key><array>" + text +
                     "<string>Apple Mail</string></array><key>Language</key>" + text +
                     "<key>App Location</key>" + text + "<key>currentConfiguration</key>" + text);
    const std::string before = elsewhere();
    const auto status = engine.run();
    EXPECT_EQ(status, 0);
    EXPECT_EQ(elsewhere(), before);
    judge(status, "");
    engine.configure("<key>Automount</key><dict><key>Protocol</key><string>smb</string><key>Server</key>" +
                     text + "<key>Path</key>" + text + "<key>Username</key>" + text + "<key>Password</key>" +
                     text + "</dict>");
    EXPECT_EQ(engine.run(), 1);
    EXPECT_FALSE(executed());
  }
}

// What the script takes over as it stands is obeyed: see docs/security.md.
TEST_F(HostileWordTest, AreCommandsInTheTemplateAndTheDestination) {
  for (const auto& [word, isObeyed] : kWords) {
    for (const bool inTemplate : {true, false}) {
      SCOPED_TRACE(word.substr(0, 30) + (inTemplate ? " in the template" : " in the destination"));
      const std::string odd = engine.home() + "/Odd/" + word;
      if (inTemplate) {
        prefer(word + "(Email Client).qvb", "");
      } else {
        std::error_code tooLong;
        std::filesystem::create_directories(odd, tooLong);
        writeTestFile(engine.configuration(),
                      xmlPropertyList("<key>Clients</key><array><string>Apple Mail</string></array>"
                                      "<key>Destination</key><string>" +
                                      odd + "</string>"));
      }
      const auto status = engine.run();
      EXPECT_TRUE(status == 0 || status == 1);
      EXPECT_EQ(executed(), isObeyed);
      EXPECT_EQ(fileExists(engine.home() + "/elsewhereMail.qvb"), inTemplate && word == "../elsewhere");
      removeFile(engine.home() + "/elsewhereMail.qvb");
      expectIntactArchives();
      removeFile(engine.home() + "/executed");
      removeTree(engine.destination());
      furnish();
      judge(kJudged, "");
    }
  }
}

struct Saying {
  const char* name;
  const char* commands;  // of the `ditto` that archives the mail, before it does
  int status = 0;
  const char* cause = "";
};

class SayingTest : public HardeningTest, public testing::WithParamInterface<Saying> {};

TEST_P(SayingTest, NeitherFillsMemoryNorHidesTheVerdict) {
  engine.installTool("ditto", "size=" + std::to_string(sweep(20'000'000, 1'000'000'000)) +
                                  "\n[ $1 != -ckX ] || {\n" + GetParam().commands +
                                  "\n}\nexec " DITTO_PATH " \"$@\"\n");
  engine.start();
  const auto status = engine.exitStatus(std::chrono::seconds(sweep(60, 600)));
  EXPECT_EQ(status, GetParam().status);
  EXPECT_LT(engine.peakMemory(), MOST_MEMORY * 1024);
  EXPECT_EQ(
      runTool({"/bin/grep", "-cP", "[\\x00-\\x08\\x0b-\\x1f\\x7f]", engine.library() + "/Logs/Corvane.log"},
              Capture::outputAndErrors, {.limit = std::chrono::minutes(10)})
          .output,
      "0\n");
  judge(status, GetParam().cause);
}

INSTANTIATE_TEST_SUITE_P(
    Tools, SayingTest,
    testing::Values(Saying{"Lines", "yes 'a line of a tool' | head -c $size"},
                    Saying{"OneLine", "head -c $size /dev/zero | tr '\\0' x"},
                    Saying{"Errors", "yes 'a line of a tool' | head -c $size >&2"},
                    Saying{"OneBytePerSecond", "for c in a b c; do printf $c; /usr/bin/sleep 1; done"},
                    Saying{"NothingAnyMore", "exec >&- 2>&-"},
                    Saying{"MoreThanTheScript", "/usr/bin/sleep 2 & kill -KILL $PPID; exit", 1, "signal 9"},
                    Saying{"Controls", "printf '\\033]0;title\\007\\033[2J\\302\\233 31m\\b\\177\\033'"}),
    [](const auto& test) { return test.param.name; });

TEST_F(HardeningTest, TheNotificationDaemonIsNotNeeded) {
  NEEDS_PRIVATE_SYSTEM();
  const auto timeRun = [this](const std::string& display, const std::function<void()>& recover = {}) {
    const auto begin = std::chrono::steady_clock::now();
    engine.start(display);
    const auto status = engine.exitStatus();
    const auto duration = std::chrono::steady_clock::now() - begin;
    EXPECT_EQ(status, 0);
    judge(status, "", recover);
    return duration;
  };
  ASSERT_TRUE(waitFor([this] { return !namesIn(engine.home() + "/tmp/NSMessagePort/names").empty(); }));
  const auto limit = timeRun(openDisplay()) + std::chrono::seconds(6);  // it is given five
  for (const bool hasWindow : {false, true}) {
    const std::string display = hasWindow ? openDisplay() : "";
    ASSERT_EQ(::kill(engine.notificationDaemon(), SIGSTOP), 0);
    EXPECT_LT(timeRun(display, [this] { ::kill(engine.notificationDaemon(), SIGCONT); }), limit);
  }
  ASSERT_EQ(::kill(engine.notificationDaemon(), SIGKILL), 0);
  ASSERT_EQ(::mount("/dev/null", "/usr/bin/gdnc", nullptr, MS_BIND, nullptr), 0);
  EXPECT_LT(timeRun(""), limit);
  ::umount2("/usr/bin/gdnc", MNT_DETACH);
}

}  // namespace
}  // namespace corvane
