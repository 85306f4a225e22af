// Runs that are asked to end from outside while they wait for others.

#include <sys/mount.h>

#include <csignal>
#include <tuple>

#include "process/Files.h"
#include "tests/support/WaitFor.h"
#include "tests/system/HardeningTest.h"

namespace corvane {
namespace {

using namespace std::chrono_literals;

struct Wait {
  const char* name;
  int signal;
  const char* tool;       // that never ends
  const char* automount;  // what the configuration says of a server
};

class EndedRunTest : public HardeningTest {
 protected:
  // Also in the place of the system's own.
  void install(const std::string& tool) {
    engine.installTool(tool, "echo $$ >\"$HOME/pid\"; exec /usr/bin/sleep 1000\n");
    if (tool != "du") return;
    ASSERT_EQ(::mount((engine.home() + "/bin/du").c_str(), "/usr/bin/du", nullptr, MS_BIND, nullptr), 0);
  }
};

class AskedToEndTest : public EndedRunTest, public testing::WithParamInterface<std::tuple<Wait, bool>> {};

TEST_P(AskedToEndTest, EndsTheToolAndTidiesUp) {
  NEEDS_PRIVATE_SYSTEM();
  const auto& [wait, hasWindow] = GetParam();
  engine.configure(std::string("<key>Clients</key><array><string>Apple Mail</string></array>") +
                   wait.automount);
  install(wait.tool);
  engine.start(hasWindow ? openDisplay() : "");
  const pid_t tool = engine.toolsProcess();
  ASSERT_GT(tool, 0);
  ASSERT_EQ(::kill(engine.pid(), wait.signal), 0);
  const auto status = engine.exitStatus(8s);
  EXPECT_EQ(status, 1);
  EXPECT_NE(::kill(tool, 0), 0);
  EXPECT_EQ(engine.log().find("Results of the Corvane:") != std::string::npos,
            wait.tool == std::string("ditto"));
  EXPECT_FALSE(fileExists("/Volumes/corvane"));
  EXPECT_FALSE(fileExists(engine.support() + "/.corvane.sh"));
  EXPECT_FALSE(fileExists(engine.destination() + "/.QVB_Backup"));
  judge(status, "] User: Cancelling Backup\n", [this] {
    ::umount2("/usr/bin/du", MNT_DETACH);
    engine.configureMail();
  });
}

TEST_F(EndedRunTest, ByTheLossOfTheDisplay) {
  install("ditto");
  engine.start(openDisplay());
  const pid_t tool = engine.toolsProcess();
  ASSERT_GT(tool, 0);
  closeDisplay();
  const auto status = engine.exitStatus(8s);
  EXPECT_EQ(status, 1);
  EXPECT_NE(::kill(tool, 0), 0);
  EXPECT_FALSE(fileExists(engine.support() + "/.corvane.sh"));
  EXPECT_FALSE(fileExists(engine.destination() + "/.QVB_Backup"));
  judge(status, "] The display is lost");
}

INSTANTIATE_TEST_SUITE_P(
    Waits, AskedToEndTest,
    testing::Combine(testing::Values(Wait{"Mount", SIGTERM, "sshfs",
                                          "<key>Automount</key><dict><key>Protocol</key><string>sftp</string>"
                                          "<key>Server</key><string>localhost</string><key>Path</key>"
                                          "<string>corvane</string></dict>"},
                                     Wait{"Measuring", SIGINT, "du", ""},
                                     Wait{"Script", SIGHUP, "ditto", ""}),
                     testing::Bool()),
    [](const auto& test) {
      return std::get<0>(test.param).name + std::string(std::get<1>(test.param) ? "InAWindow" : "");
    });

}  // namespace
}  // namespace corvane
