#include "process/RunTool.h"

#include <gtest/gtest.h>
#include <csignal>
#include <thread>

#include "process/EndRequest.h"

namespace corvane {
namespace {

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
}

TEST(RunTool, NamesTheProgramThatCouldNotBeStarted) {
  const auto result = runTool({"/no/such/tool", "x"});
  EXPECT_EQ(result.status, -1);
  EXPECT_EQ(result.problem, "cannot start /no/such/tool: No such file or directory");
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

}  // namespace
}  // namespace corvane
