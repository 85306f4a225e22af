// The command itself, with real programs.
#include <sys/stat.h>
#include <unistd.h>
#include <climits>
#include <sstream>

#include "tests/tools/osascript/CommandFixture.h"
#include "tools/osascript/Names.h"

namespace corvane {
namespace {

using osascript::lowerCase;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

TEST_F(CommandTest, QuitsProcessesOfExactlyThatName) {
  const std::string script = scratch_.writeScript("scripts/" + standIn_, "sleep 30 & wait\n");
  StandIn program(scratch_, standIn_);
  StandIn sameName(scratch_, "corvanestandin" + own_);
  StandIn interpreted({script});
  StandIn longer(scratch_, standIn_ + " Sync");
  StandIn shorter(scratch_, "Corvane Stand-I");
  const auto result = tell("CORVANE stand-in-" + own_, "quit");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(program.endingSignal(), SIGTERM);
  EXPECT_EQ(sameName.endingSignal(), SIGTERM);
  EXPECT_EQ(interpreted.endingSignal(), SIGTERM);
  EXPECT_EQ(longer.endingSignal(), SIGVTALRM);
  EXPECT_EQ(shorter.endingSignal(), SIGVTALRM);
}

TEST_F(CommandTest, KnowsAProcessThatCallsItselfOtherwiseByItsFile) {
  const std::string shell = StandIn::copyOf("/bin/sh", scratch_, standIn_);
  StandIn renamed({shell, "-c", "printf other >/proc/$$/comm; sleep 30 & wait"});
  ASSERT_TRUE(
      waitFor([&] { return systemFile(renamed.pid(), "comm") == "other\n"; }, std::chrono::seconds(10)));
  EXPECT_EQ(tell(standIn_, "quit").status, 0);
  EXPECT_EQ(renamed.endingSignal(), SIGTERM);
}

TEST_F(CommandTest, LeavesOtherUsersAlone) {
  if (::getuid() != 0) GTEST_SKIP() << "only root can start a program of another user";
  ::chmod(scratch_.path().c_str(), 0755);
  const std::string program = StandIn::copyOf("/bin/sleep", scratch_, standIn_);
  StandIn other({"/usr/bin/setpriv", "--reuid=65534", "--clear-groups", program, "30"});
  ASSERT_TRUE(waitFor([&] { return other.arguments().starts_with(program); }, std::chrono::seconds(10)));
  EXPECT_THAT(tell(standIn_, "quit").output, HasSubstr("(-1728)"));
  EXPECT_EQ(other.endingSignal(), SIGVTALRM);
}

TEST_F(CommandTest, SparesThoseThatStartedIt) {
  const std::string parent =
      scratch_.writeScript(standIn_, std::string(OSASCRIPT_PATH) + " -e 'tell application \"" + standIn_ +
                                         "\" to quit' 2>&1\necho status $?\n");
  const auto result = runTool({parent, {parent}, environment_});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.output, AllOf(HasSubstr("(-1728)"), EndsWith("status 1\n")));
}

struct ErrorCase {
  std::vector<std::string> lines;
  const char* output;
};

TEST_F(CommandTest, ReportsFailuresOnStandardError) {
  scratch_.writeScript("bin/idle-mail", "");
  const ErrorCase cases[] = {
      {{"tell application \"Absent \\\"Mail\\\"\" to activate"},
       "38:46: execution error: Can’t get application \"Absent \\\"Mail\\\"\". (-1728)\n"},
      {{"tell application \"Absent Mail\"", "quit", "end tell"},
       "31:35: execution error: Can’t get application \"Absent Mail\". (-1728)\n"},
      {{"tell application \"Absent Mail\" to set working offline to true"},
       "34:61: execution error: Can’t get application \"Absent Mail\". (-1728)\n"},
      {{"tell application \"Idle Mail\" to set working offline to true"},
       "32:59: execution error: Idle Mail got an error: Application isn’t running. (-600)\n"},
      {{"tell application \"Idle Mail\" to shut down"},
       "32:41: execution error: Idle Mail got an error: Can’t continue shut down. (-1708)\n"},
      {{"tell application \"Idle Mail\" to quit"}, ""},
      {{"tell application \"Idle Mail"},
       "17:27: syntax error: Expected “\"” but found end of line. (-2741)\n"},
      {{}, "usage: osascript -e statement [-e statement ...]\n"},
  };
  for (const auto& row : cases) {
    const auto result = run(row.lines);
    EXPECT_EQ(result.output, row.output);
    EXPECT_EQ(result.status, *row.output ? 1 : 0);
    EXPECT_EQ(run(row.lines, Capture::outputOnly).output, "");
  }
}

TEST_F(CommandTest, SaysThatARunningApplicationCannotBeSetOffline) {
  StandIn running(scratch_, standIn_);
  const auto result = tell(standIn_, "set working offline to true");
  EXPECT_THAT(result.output, HasSubstr("Can’t set working offline to true. (-10006)"));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(running.endingSignal(), SIGVTALRM);
}

// Starting it a second time would fail, so that success tells that nothing was started.
TEST_F(CommandTest, DoesNotStartWhatRuns) {
  constexpr const char* kNoProgram = "\177ELF";
  scratch_.write("bin/corvane-stand-in-" + lowerCase(own_), kNoProgram, 0755);
  {
    const StandIn running(scratch_, standIn_);
    EXPECT_EQ(tell(standIn_, "activate").status, 0);
  }
  const auto result = tell(standIn_, "activate");
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.output, AllOf(HasSubstr("cannot start " + scratch_.path()), HasSubstr("(-10810)")));
}

TEST_F(CommandTest, RunsNothingOfItsArguments) {
  const std::string made = scratch_.path("made");
  for (const std::string& text :
       {"$(touch " + made + ")", "`touch " + made + "`", "; touch " + made + " ;"}) {
    for (const char* statement : {"activate", "quit"}) EXPECT_EQ(tell(text, statement).status, 1);
    EXPECT_EQ(run({text}).status, 1);
  }
  EXPECT_FALSE(fileExists(made));
}

// An application that writes down how it was started, and stays.
class ActivateTest : public CommandTest {
 protected:
  ~ActivateTest() override {
    if (pid_ > 0) ::kill(-pid_, SIGKILL);
  }
  static constexpr const char* kAgent = R"(printf '%s\n' $$ "$PWD" "$@" >"$HOME/partly"
mv "$HOME/partly" "$HOME/started"
sleep 30 & wait
)";

  /// Its folder and arguments, one per line.
  std::string startedWith() {
    const std::string file = scratch_.path("started");
    if (!waitFor([&] { return fileExists(file); }, std::chrono::seconds(10))) return "not started";
    std::istringstream lines(scratch_.read("started"));
    lines >> pid_;
    std::string rest;
    std::getline(lines >> std::ws, rest, '\0');
    return rest;
  }
  pid_t pid_ = 0;
};

TEST_F(ActivateTest, StartsAProgramThatOutlivesTheCommand) {
  scratch_.writeScript("bin/corvane-agent-" + lowerCase(own_), kAgent);
  set("BASHOPTS", "xpg_echo");
  set("TIME_STYLE", "+%m");
  const auto result = tell(agent_, "activate");  // returns once nobody holds its output any more
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(startedWith(), scratch_.path() + "\n");
  EXPECT_EQ(::getsid(pid_), pid_);
  for (const char* stream : {"/fd/0", "/fd/1", "/fd/2"}) {
    char target[PATH_MAX] = {};
    EXPECT_GT(::readlink(("/proc/" + std::to_string(pid_) + stream).c_str(), target, sizeof target - 1), 0);
    EXPECT_STREQ(target, "/dev/null");
  }
  EXPECT_THAT(systemFile(pid_, "environ"),
              AllOf(HasSubstr("HOME="), Not(HasSubstr("BASHOPTS=")), Not(HasSubstr("TIME_STYLE="))));
}

TEST_F(ActivateTest, StartsADesktopEntryInItsFolder) {
  const std::string program = scratch_.writeScript("programs/corvane agent", kAgent);
  scratch_.write("data/applications/agent.desktop", "[Desktop Entry]\nType=Application\nName=" + agent_ +
                                                        "\nPath=" + scratch_.path() + "/programs\nExec=\"" +
                                                        program + "\" %U --mail \"two words\"\n");
  EXPECT_EQ(tell(agent_, "activate").status, 0);
  EXPECT_EQ(startedWith(), scratch_.path() + "/programs\n--mail\ntwo words\n");
}

}  // namespace
}  // namespace corvane
