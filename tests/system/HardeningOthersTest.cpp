// Runs on a machine that others use too: what they put where the run works.

#include <unistd.h>

#include <string>

#include "process/Files.h"
#include "process/RunTool.h"
#include "tests/system/HardeningTest.h"

namespace corvane {
namespace {

using testing::HasSubstr;

constexpr uid_t kSomebody = 54321;

class UnprivilegedRunTest : public HardeningTest {
 protected:
  UnprivilegedRunTest() : HardeningTest(isPrivateSystem() ? kSomebody : ::geteuid()) {}

  // As root, in the home folder.
  std::string shell(const std::string& commands) {
    const auto result = runTool({"/bin/sh", "-c", "cd '" + engine.home() + "' && " + commands});
    EXPECT_EQ(result.status, 0) << commands << ": " << result.output;
    return result.output;
  }
};

struct Trap {
  const char* commands;  // make "$trap"
  const char* cause;     // by which the run is refused; null when it goes on
  const char* causeForStaging;
};

constexpr const char* kForeign = "it belongs to another user";
constexpr Trap kTraps[] = {
    {"ln -s \"$PWD/treasure\" $trap", "it is a link", "it is a link"},
    {"mkdir -m 777 $trap", kForeign, kForeign},
    {"echo theirs >$trap && chmod 666 $trap", kForeign, kForeign},
    {"echo theirs >/tmp/theirs && chmod 666 /tmp/theirs && ln /tmp/theirs $trap", kForeign, kForeign},
    // Taking away this name of a file leaves the file.
    {"ln treasure/gold $trap", nullptr, "something else has its name"}};

TEST_F(UnprivilegedRunTest, TrapsAreNeitherUsedNorTouched) {
  NEEDS_PRIVATE_SYSTEM();
  useServer();
  writeTestFile(engine.home() + "/treasure/gold", "gold");
  for (const char* name : {".QVB_Backup", "corvane.qvb", "Daily-Mail.qvb"}) {
    for (const auto& trap : kTraps) {
      SCOPED_TRACE(name + std::string(": ") + trap.commands);
      const char* cause = name[0] == '.' ? trap.causeForStaging : trap.cause;
      shell("chown -R " + std::to_string(kSomebody) + " treasure && trap=/tmp/" + name + "; " +
            trap.commands);
      const std::string before = shell("ls -lAR --time-style=full-iso /tmp");
      const auto status = engine.run();
      EXPECT_EQ(status, cause ? 1 : 0);
      EXPECT_TRUE(!cause || shell("ls -lAR --time-style=full-iso /tmp") == before);
      EXPECT_EQ(shell("ls treasure; cat treasure/gold"), "gold\ngold");
      const std::string line = "cannot use /tmp/" + std::string(name) + ": ";
      judge(status, cause ? line + cause : "", [this] { shell("rm -rf /tmp/* /tmp/.QVB_Backup"); });
    }
  }
}

}  // namespace
}  // namespace corvane
