// The programs that are started: tools, which are waited for, and the script, to which a run loop
// listens; and what becomes of the bytes of its output before they are shown.
#include "process/TaskWrapper.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>
#include <chrono>
#include <csignal>
#include <functional>
#include <sstream>
#include <thread>

#include "platform/headless/HeadlessRunLoop.h"
#include "process/ControlFilter.h"
#include "process/EndRequest.h"
#include "process/RunTool.h"
#include "process/Utf8Decoder.h"
#include "tests/support/StandardError.h"
#include "tests/support/WaitFor.h"

namespace corvane {
namespace {

using namespace std::string_literals;
using testing::HasSubstr;

ToolResult runShell(const std::string& line, Capture capture = Capture::outputAndErrors) {
  return runTool({"/bin/sh", "-c", line}, capture);
}

TEST(RunTool, AnswersHowTheToolEndedAndWhatItWrote) {
  EXPECT_EQ(runShell("true").status, 0);
  EXPECT_EQ(runShell("kill -9 $$").status, 128 + SIGKILL);
  EXPECT_EQ(runShell("exec >&- 2>&-; sleep 0.1; exit 4").status, 4);  // output ended before the tool did
  EXPECT_EQ(runShell("echo out; echo err >&2").output, "out\nerr\n");
  EXPECT_EQ(runShell("echo out; echo err >&2", Capture::outputOnly).output, "out\n");
  EXPECT_EQ(runShell("head -c 1000000 /dev/zero").output, std::string(1000000, '\0'));
  const auto missing = runTool({"/no/such/tool", "x"});
  EXPECT_EQ(missing.status, -1);
  EXPECT_EQ(missing.problem, "cannot start /no/such/tool: No such file or directory");
}

TEST(RunTool, WaitsNoLongerThanItMay) {
  const std::vector<std::string> endless{"/bin/sh", "-c", "sleep 1000 & exec sleep 1000"};
  auto result = runTool(endless, Capture::outputOnly, {.limit = std::chrono::milliseconds(100)});
  EXPECT_TRUE(result.timedOut);
  EXPECT_EQ(result.problem, "/bin/sh was not done within 1 seconds");
  std::thread asker([] {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    requestEnd();
  });
  result = runTool(endless);
  asker.join();
  EXPECT_TRUE(result.interrupted);
  EXPECT_TRUE(runShell("exit 3").interrupted);
  EXPECT_EQ(runTool({"/bin/sh", "-c", "exit 3"}, Capture::outputOnly, {.alsoWhenEnding = true}).status, 3);
  forgetEndRequest();
}

TEST(RunTool, StandsAboveTheSignalsOfItsStarter) {
  const auto term = std::signal(SIGTERM, SIG_IGN);
  EXPECT_EQ(runShell("kill $$; echo alive").output, "");  // as at a login
  std::signal(SIGTERM, term);
  // Some programs start others with SIGCHLD ignored; then the system does not keep exit statuses.
  const auto child = std::signal(SIGCHLD, SIG_IGN);
  EXPECT_NE(runShell("exit 3").status, 0);
  std::signal(SIGCHLD, child);
}

/// Runs a script to its end on a run loop that stops by itself once nothing is left to wait for.
class TaskWrapperTest : public testing::Test, public TaskController {
 protected:
  void processStarted() override {
    if (stopAtStart) task->stopProcess();
  }
  void appendOutput(const std::string& text) override {
    output += text;
    if (onOutput) onOutput();
  }
  void processFinished() override { ++finished; }

  void prepare(const std::string& lines, const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments{folder.writeScript("my script.sh", lines)};
    arguments.insert(arguments.end(), more.begin(), more.end());
    task = std::make_unique<TaskWrapper>(loop, *this, arguments, "/opt/corvane tools");
    output.clear();
    finished = 0;
  }

  void run() {
    task->startProcess();
    loop.run();
  }

  ScratchFolder folder;
  HeadlessRunLoop loop;
  std::unique_ptr<TaskWrapper> task;
  std::function<void()> onOutput;
  std::string output;
  bool stopAtStart = false;
  int finished = 0;
};

// Gone, or dead and only not yet noticed by their parent.
void expectAllDead(const std::string& pids) {
  std::istringstream lines(pids);
  const auto isDead = [](const std::string& pid) {
    const auto state = runTool({"/bin/ps", "-o", "stat=", "-p", pid}).output;
    return state.empty() || state.starts_with('Z');
  };
  for (std::string pid; lines >> pid;) EXPECT_TRUE(waitFor([&] { return isDead(pid); })) << pid;
}

TEST_F(TaskWrapperTest, OutputIsThatOfTheScript) {
  const std::pair<const char*, const char*> rows[] = {
      // The pause lets the first half of a character arrive alone.
      {"echo one\necho two >&2\nprintf 'a\\303'\nsleep 0.2\nprintf '\\240b'\n", "one\ntwo\naàb"},
      {"cat\necho end\n", "end\n"},  // there is nothing to read
      {"[ \"$(pwd)/my script.sh\" = \"$0\" ] && echo in its folder\n", "in its folder\n"},
      {"[ $(ps -o pgid= -p $$) = $$ ] && echo leads its group\n", "leads its group\n"},
      {"case $PATH in *:'/opt/corvane tools') echo last in PATH; esac\n", "last in PATH\n"},
      {"x=3\nwhile [ $x -gt 1 ]; do let x-=1; echo \"a\\t$x\"; done\n", "a\t2\na\t1\n"},
  };
  for (const auto& [lines, expected] : rows) {
    prepare(lines);
    run();
    EXPECT_EQ(output, expected);
    EXPECT_EQ(finished, 1);
  }
}

TEST_F(TaskWrapperTest, ArgumentsReachTheScriptUntouchedAndNoDescriptorButTheThree) {
  const int low = ::open("/dev/null", O_RDONLY);
  const int high = ::fcntl(low, F_DUPFD, 200);
  // The listing itself holds one more.
  prepare("printf '<%s>' \"$0\" \"$@\" $(ls /dev/fd | wc -l); [ -e /dev/fd/200 ] || echo closed\n",
          {"a b", "", "$HOME;`id`"});
  run();
  EXPECT_EQ(output, "<" + folder.path("my script.sh") + "><a b><><$HOME;`id`><4>closed\n");
  ::close(low);
  ::close(high);
}

TEST_F(TaskWrapperTest, WhatCannotBeStartedIsToldAndFinishes) {
  const StandardError errors;
  prepare("echo ran\n", {std::string(8 << 20, 'x')});  // more than any system takes
  run();
  EXPECT_EQ(output, "");
  EXPECT_EQ(finished, 1);
  EXPECT_THAT(errors.text(), HasSubstr("cannot start /bin/"));
}

TEST_F(TaskWrapperTest, ItsEndEndsEverythingTheChildStarted) {
  for (const bool stops : {true, false}) {
    onOutput = [&] {
      if (std::count(output.begin(), output.end(), '\n') < 3) return;
      stops ? task->stopProcess() : loop.stop();
    };
    // One of them does not hear the request.
    prepare("sleep 1000 & echo $!\n(trap '' TERM; exec sh -c 'echo $$; exec sleep 1000') &\necho $$\nwait\n");
    run();
    EXPECT_EQ(finished, stops ? 1 : 0);
    task->stopProcess();
    task.reset();
    EXPECT_EQ(finished, 1);
    expectAllDead(output);
  }
}

TEST_F(TaskWrapperTest, WhatGoesOnWithoutOutputOrWithoutTheScriptIsEnded) {
  const StandardError errors;
  for (const char* lines : {"echo $$\nexec >&- 2>&-\nexec sleep 1000\n", "sleep 1000 & echo $!\n"}) {
    prepare(lines);
    run();
    EXPECT_EQ(finished, 1);
    expectAllDead(output);
  }
  EXPECT_THAT(errors.text(), HasSubstr("but not all that it started"));
}

TEST_F(TaskWrapperTest, StopBeforeTheStartDoesNothingButAtTheStartTheChildNeverRuns) {
  prepare("echo ran\n");
  task->stopProcess();
  EXPECT_EQ(finished, 0);
  run();
  EXPECT_EQ(output, "ran\n");
  stopAtStart = true;
  prepare("touch \"$0.ran\"\n");
  run();
  EXPECT_EQ(finished, 1);
  EXPECT_EQ(folder.list(), std::vector<std::string>{"my script.sh"});
}

TEST(ControlFilter, LeavesOnlyTextAndLineBreaks) {
  const std::pair<std::string, std::string> rows[] = {
      {"Grüße\tan\r\nalle\n", "Grüße\tan\r\nalle\n"},
      {"\x1b[31mred\x1b[0m \x1b[?25l\x1b[2Ja\x1b[1;5Hb", "red ab"},
      {"\x1b]0;title\x07text", "text"},
      {"\x1b]8;;http://a\x1b\\text\x1b]8;;\x1b\\", "text"},
      {"\x1bPq#0;2\x1b\\a\x1b_x\x1b\\b", "ab"},
      {"\x1b(Ba\x1b=b\x1b\x63\x63\x1b", "abc"},
      {"a\0b\x07\x63\x08\x64\x7f\x65\x0e"s, "abcde"},
      {"\xc2\x9b\x33\x31mred\xc2\x85z\xc2\xa0ü", "31mredz\xc2\xa0ü"},
      {"\x1b[3ümlaut", "ümlaut"},
      {"\x1b]0;neverBackup completed\nnext\x1b]\a", "0;neverBackup completed\nnext"},
      {"\x1b]" + std::string(5000, 'x') + "\a\x1b]y\az", std::string(5000, 'x') + "z"},
      {"\x1b[12\r\nBackup completed", "\r\nBackup completed"},
  };
  for (const auto& [text, shown] : rows) {
    for (std::size_t cut = 0; cut < text.size(); ++cut) {
      if ((static_cast<unsigned char>(text[cut]) & 0xc0) == 0x80) continue;  // pieces hold whole characters
      ControlFilter filter;
      const std::string first = filter.filter(text.substr(0, cut));
      ASSERT_EQ(first + filter.filter(text.substr(cut)), shown)
          << testing::PrintToString(text) << " cut at " << cut;
    }
  }
}

TEST(Utf8Decoder, JoinsCharactersSplitBetweenPieces) {
  // One to four bytes each, with the first and last of every length.
  const std::string text = "a\x7F\u0080\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000\U0010FFFF\n";
  for (std::size_t piece = 1; piece <= text.size(); ++piece) {
    Utf8Decoder decoder;
    std::string decoded;
    for (std::size_t at = 0; at < text.size(); at += piece) decoded += decoder.decode(text.substr(at, piece));
    EXPECT_EQ(decoded, text) << "in pieces of " << piece;
  }
}

TEST(Utf8Decoder, ReplacesEachRunOfWhatIsNoText) {
  const std::pair<const char*, const char*> rows[] = {
      {"a\x80\xBF\xFE\xFFz\xFF", "a\uFFFDz\uFFFD"},
      {"\xC1\xBFz", "\uFFFDz"},          // overlong in two bytes
      {"\xE0\x9F\xBFz", "\uFFFDz"},      // in three
      {"\xF0\x8F\xBF\xBFz", "\uFFFDz"},  // in four
      {"\xED\xA0\x80z", "\uFFFDz"},      // first surrogate
      {"\xED\xBF\xBFz", "\uFFFDz"},      // last surrogate
      {"\xF4\x90\x80\x80z", "\uFFFDz"},  // above the last character
      {"\xF5\x80\x80\x80z", "\uFFFDz"},
      {"\xF0\x9F\x98\u00E4", "\uFFFD\u00E4"},  // broken off in the middle
      {"Donn\xE9 z", "Donn\uFFFD z"},          // another encoding
      {"a\xED\xA0", "a\uFFFD"},
      {"a\xF0\x9F\x98", "a"},  // the rest may follow
  };
  for (const auto& [bytes, text] : rows) EXPECT_EQ(Utf8Decoder().decode(bytes), text);
  Utf8Decoder decoder;
  EXPECT_EQ(decoder.decode("\xE2\x82"), "");
  EXPECT_EQ(decoder.decode(""), "");
  EXPECT_EQ(decoder.decode("z"), "\uFFFDz");
}

}  // namespace
}  // namespace corvane
