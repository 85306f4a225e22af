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

using testing::HasSubstr;

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
  void processFinished() override {
    ++finished;
    guard.reset();
  }

  void prepare(const std::string& lines, const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments{folder.writeScript("my script.sh", lines)};
    arguments.insert(arguments.end(), more.begin(), more.end());
    task = std::make_unique<TaskWrapper>(loop, *this, arguments, "/opt/corvane tools");
    output.clear();
    finished = 0;
  }

  void run() {
    guard = loop.repeat(30, [this] {
      ADD_FAILURE() << "the process did not finish; output so far: " << output;
      loop.stop();
    });
    task->startProcess();
    loop.run();
  }

  ScratchFolder folder;
  HeadlessRunLoop loop;
  std::unique_ptr<RunLoop::Source> guard;
  std::unique_ptr<TaskWrapper> task;
  std::function<void()> onOutput;
  std::string output;
  bool stopAtStart = false;
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

TEST_F(TaskWrapperTest, OutputIsThatOfTheScript) {
  const std::pair<const char*, const char*> rows[] = {
      {"", ""},
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

  prepare("");
  std::filesystem::remove(folder.path("my script.sh"));
  run();
  EXPECT_EQ(finished, 1);
  EXPECT_THAT(output, HasSubstr("my script.sh"));  // the shell's own complaint
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

TEST_F(TaskWrapperTest, ChildThatClosesItsOutputAndGoesOnIsEnded) {
  prepare("echo $$\nexec >&- 2>&-\nexec sleep 1000\n");
  run();
  EXPECT_EQ(finished, 1);
  expectAllDead(output);
}

TEST_F(TaskWrapperTest, WhatItLeavesBehindIsNotWaitedFor) {
  const StandardError errors;
  prepare("sleep 1000 & echo $!\n");
  run();
  EXPECT_EQ(finished, 1);
  expectAllDead(output);
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

}  // namespace
}  // namespace corvane
