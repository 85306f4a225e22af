// Runs on a machine that others use too: what they put where the run works, and files that are no settings.

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

// Each with a configuration of its own; archives for a server are built in /tmp, by one user at a time.
TEST_F(UnprivilegedRunTest, TwoUsersDoNotDisturbEachOther) {
  NEEDS_PRIVATE_SYSTEM();
  useServer();
  engine.installTool("ditto",
                     "[ $1 != -ckX ] || { echo $$ >\"$HOME/pid\"\n"
                     "until [ -e \"$HOME/go\" ]; do /usr/bin/sleep 0.1; done; }\n"
                     "exec " DITTO_PATH " \"$@\"\n");
  engine.start();
  ASSERT_GT(engine.toolsProcess(), 0);
  EngineRun other(kSomebody + 1);
  other.configureMail();
  EXPECT_EQ(other.run(), 0);
  writeTestFile(other.configuration(), readTestFile(engine.configuration()));
  EXPECT_EQ(other.run(), 1);
  EXPECT_THAT(other.log(), HasSubstr(std::string("] cannot use /tmp/.QVB_Backup: ") + kForeign));
  shell("touch go");
  judge(engine.exitStatus(), "");
}

struct BadFile {
  const char* name;
  const char* commands;  // make "$file" in its folder
};

class NoPropertyListTest : public UnprivilegedRunTest, public testing::WithParamInterface<BadFile> {};

TEST_P(NoPropertyListTest, EndsTheRunWithItsName) {
  NEEDS_PRIVATE_SYSTEM();
  const std::string usual = engine.preferences();
  const std::string lowerCase = engine.library() + "/Preferences/com.quillon.corvane.plist";
  const std::string configuration = engine.configuration();
  // The file that is put aside, and the one that stands there in its place.
  const std::pair<std::string, std::string> names[] = {
      {usual, usual}, {usual, lowerCase}, {configuration, configuration}};
  for (const auto& row : names) {
    const std::string &sound = row.first, &bad = row.second;
    SCOPED_TRACE(bad);
    shell("mv '" + sound + "' sound && file=$(basename '" + bad + "') && cd \"$(dirname '" + bad +
          "')\" && " + GetParam().commands);
    judge(engine.run(), bad, [&] { shell("rm -rf '" + bad + "' && mv sound '" + sound + "'"); });
  }
}

INSTANTIATE_TEST_SUITE_P(Files, NoPropertyListTest,
                         testing::Values(BadFile{"Blank", ": >$file"}, BadFile{"Folder", "mkdir $file"},
                                         BadFile{"Pipe", "mkfifo $file"},
                                         BadFile{"LinkLoop", "ln -s $file $file"},
                                         BadFile{"Gigabyte", "truncate -s 1G $file"},
                                         BadFile{"Forbidden", "echo '{}' >$file && chmod 0 $file"}),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace corvane
