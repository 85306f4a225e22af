#include "process/TaskWrapper.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>
#include <functional>
#include <sstream>

#include "platform/headless/HeadlessRunLoop.h"
#include "process/RunTool.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/StandardError.h"
#include "tests/support/WaitFor.h"

namespace corvane {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

/// Runs a script to its end on a run loop that stops by itself once nothing is left to wait for.
class TaskWrapperTest : public testing::Test, public TaskController {
 protected:
  void processStarted() override {
    ++started;
    if (stopAtStart) task->stopProcess();
  }
  void appendOutput(const std::string& text) override {
    output += text;
    if (onOutput) onOutput();
  }
  void processFinished() override {
    ++finished;
    guard.reset();
  }

  void start(const std::string& lines) { start(std::vector{folder.writeScript("script.sh", lines)}); }
  void start(const std::vector<std::string>& arguments) {
    task = std::make_unique<TaskWrapper>(loop, *this, arguments, "/opt/corvane tools");
    guard = loop.repeat(30, [this] {
      ADD_FAILURE() << "the process did not finish; output so far: " << output;
      loop.stop();
    });
    task->startProcess();
  }

  std::string outputOf(const std::string& lines) {
    start(lines);
    loop.run();
    EXPECT_EQ(finished, 1);
    return output;
  }

  bool hasLines(int count) const { return std::count(output.begin(), output.end(), '\n') >= count; }

  ScratchFolder folder;
  HeadlessRunLoop loop;
  std::unique_ptr<RunLoop::Source> guard;
  std::unique_ptr<TaskWrapper> task;
  std::function<void()> onOutput;
  std::string output;
  bool stopAtStart = false;
  int started = 0;
  int finished = 0;
};

// Gone, or dead and only not yet noticed by its parent.
bool isDead(const std::string& pid) {
  const auto state = runTool({"/bin/ps", "-o", "stat=", "-p", pid}).output;
  return state.empty() || state.starts_with('Z');
}

void expectAllDead(const std::string& pids) {
  std::istringstream lines(pids);
  for (std::string pid; lines >> pid;) EXPECT_TRUE(waitFor([&] { return isDead(pid); })) << pid;
}

constexpr const char* kTwoSleepers = "sleep 1000 & echo $!\nsleep 1000 & echo $!\necho $$\nwait\n";

TEST_F(TaskWrapperTest, SilentChildFinishesOnce) {
  EXPECT_EQ(outputOf(""), "");
  EXPECT_EQ(started, 1);
  task->stopProcess();
  task.reset();
  EXPECT_EQ(finished, 1);
}

TEST_F(TaskWrapperTest, OutputAndErrorsComeInOrderAndWithWholeCharacters) {
  // The pause lets the first half of a character arrive alone.
  EXPECT_EQ(outputOf("echo one\necho two >&2\nprintf 'a\\303'\nsleep 0.2\nprintf '\\240b'\n"),
            "one\ntwo\naàb");
}

TEST_F(TaskWrapperTest, ArgumentsReachTheScriptUntouched) {
  start({folder.writeScript("my script.sh", "printf '<%s>' \"$0\" \"$@\"\n"), "a b", "", "$HOME;`id`"});
  loop.run();
  EXPECT_EQ(output, "<" + folder.path("my script.sh") + "><a b><><$HOME;`id`>");
}

TEST_F(TaskWrapperTest, MissingScriptEndsTheRun) {
  start({folder.path("missing.sh")});
  loop.run();
  EXPECT_EQ(finished, 1);
  EXPECT_THAT(output, HasSubstr("missing.sh"));  // the shell's own complaint
}

TEST_F(TaskWrapperTest, ChildThatCannotBeStartedIsLoggedAndFinishes) {
  const StandardError errors;
  start({folder.writeScript("script.sh", "echo ran\n"),
         std::string(8 << 20, 'x')});  // more than any system takes
  loop.run();
  EXPECT_EQ(started, 1);
  EXPECT_EQ(finished, 1);
  EXPECT_EQ(output, "");
  EXPECT_THAT(errors.text(), HasSubstr("cannot start /bin/"));
}

TEST_F(TaskWrapperTest, StopEndsEverythingTheChildStarted) {
  onOutput = [this] {
    if (hasLines(3)) task->stopProcess();
  };
  start(kTwoSleepers);
  loop.run();
  EXPECT_EQ(finished, 1);
  task->stopProcess();
  EXPECT_EQ(finished, 1);
  expectAllDead(output);
}

TEST_F(TaskWrapperTest, DestroyingItEndsEverythingTheChildStarted) {
  onOutput = [this] {
    if (hasLines(3)) loop.stop();
  };
  start(kTwoSleepers);
  loop.run();
  EXPECT_EQ(finished, 0);
  task.reset();
  EXPECT_EQ(finished, 1);
  expectAllDead(output);
}

TEST_F(TaskWrapperTest, ChildThatIgnoresTheRequestIsKilled) {
  onOutput = [this] { task->stopProcess(); };
  start("trap '' TERM\necho $$\nwhile :; do sleep 1; done\n");
  loop.run();
  EXPECT_EQ(finished, 1);
  expectAllDead(output);
}

TEST_F(TaskWrapperTest, ChildThatClosesItsOutputAndGoesOnIsEnded) {
  expectAllDead(outputOf("echo $$\nexec >&- 2>&-\nexec sleep 1000\n"));
}

TEST_F(TaskWrapperTest, StopBeforeTheStartDoesNothing) {
  task =
      std::make_unique<TaskWrapper>(loop, *this, std::vector{folder.writeScript("s.sh", "echo ran\n")}, "");
  task->stopProcess();
  EXPECT_EQ(finished, 0);
  task->startProcess();
  loop.run();
  EXPECT_EQ(output, "ran\n");
  EXPECT_EQ(finished, 1);
}

TEST_F(TaskWrapperTest, StoppedAtItsStartTheChildNeverRuns) {
  stopAtStart = true;
  EXPECT_EQ(outputOf("touch \"$0.ran\"\n"), "");
  EXPECT_EQ(folder.list(), std::vector<std::string>{"script.sh"});
}

TEST_F(TaskWrapperTest, ChildHasNothingToRead) { EXPECT_EQ(outputOf("cat\necho end\n"), "end\n"); }

TEST_F(TaskWrapperTest, ChildLeadsItsOwnProcessGroup) {
  EXPECT_EQ(outputOf("[ $(ps -o pgid= -p $$) = $$ ] && echo leads\n"), "leads\n");
}

TEST_F(TaskWrapperTest, ChildInheritsNoDescriptorButTheThree) {
  const int low = ::open("/dev/null", O_RDONLY);
  const int high = ::fcntl(low, F_DUPFD, 200);
  // The listing itself holds one more.
  EXPECT_EQ(outputOf("echo $(ls /dev/fd | wc -l) $([ -e /dev/fd/200 ] || echo closed)\n"), "4 closed\n");
  ::close(low);
  ::close(high);
}

TEST_F(TaskWrapperTest, ToolsFolderComesAfterTheSystemsOwn) {
  EXPECT_THAT(outputOf("echo \"$PATH\"\n"), EndsWith(":/opt/corvane tools\n"));
}

TEST_F(TaskWrapperTest, ShellCountsAndEchoesAsOnTheHomeSystem) {
  EXPECT_EQ(outputOf("x=3\nwhile [ $x -gt 1 ]; do let x-=1; echo \"a\\t$x\"; done\n"), "a\t2\na\t1\n");
}

}  // namespace
}  // namespace corvane
