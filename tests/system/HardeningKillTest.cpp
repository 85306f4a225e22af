// Runs of which something is killed, or whose engine is refused one call of the system.

#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <iostream>
#include <random>
#include <sstream>
#include <thread>

#include "process/Files.h"
#include "tests/support/WaitFor.h"
#include "tests/system/HardeningTest.h"

namespace corvane {
namespace {

using namespace std::chrono_literals;

class KilledRunTest : public HardeningTest {};

struct Victim {
  const char* name;
  const char* commands;
  const char* cause;
};

constexpr Victim kVictims[] = {
    {"engine", "echo $$ >\"$HOME/last\"; kill -KILL $(ps -o ppid= -p $PPID); exec sleep 1000",
     "Ending the script of an earlier backup"},
    {"shell", "kill -KILL $PPID", "signal 9"},
    {"tool", "\"$tool\" \"$@\" & kill -KILL $!; wait $!; exit $?", ": Backup failed."}};

TEST_F(KilledRunTest, AtEachStep) {
  for (const auto& victim : kVictims) {
    bool reached = true;
    for (unsigned long step = 1; reached; step += sweep(3, 1)) {
      SCOPED_TRACE(victim.name + std::string(" at step ") + std::to_string(step));
      engineIsVictim = victim.name == std::string("engine");
      atStep(step, victim.commands);
      const auto status = engine.run();
      reached = waitFor([&] { return steps() >= step; }, 1s);
      EXPECT_TRUE(reached || step > 8);  // two folders, three times ditto, the move, the removal, the mark
      judge(status, victim.cause);
      const std::string orphan = std::to_string(std::atoi(readTestFile(engine.home() + "/last").c_str()));
      EXPECT_EQ(readTestFile("/proc/" + orphan + "/cmdline"), "");  // gone, or only not yet buried
    }
  }
}

std::vector<pid_t> childrenOf(pid_t pid) {
  const std::string id = std::to_string(pid);
  std::istringstream list(readTestFile("/proc/" + id + "/task/" + id + "/children"));
  std::vector<pid_t> children;
  for (pid_t child = 0; list >> child;) children.push_back(child);
  return children;
}

TEST_F(KilledRunTest, AtRandomTimes) {
  const auto seed = std::random_device()();
  std::cout << "seed " << seed << '\n';
  std::mt19937 random(seed);
  auto duration = std::chrono::microseconds(0);
  for (unsigned long round = 0; round <= sweep(8, 100); ++round) {
    SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
    const auto begin = std::chrono::steady_clock::now();
    engine.start();
    if (round > 0) {
      const auto moment =
          begin + std::chrono::microseconds(random() % static_cast<unsigned long>(duration.count()));
      std::this_thread::sleep_until(moment);
      pid_t victim = engine.pid();
      for (auto depth = random() % 3; depth > 0; --depth) {
        if (const auto children = childrenOf(victim); !children.empty()) victim = children.front();
      }
      engineIsVictim = victim == engine.pid();
      ::kill(victim, SIGKILL);
    }
    const auto status = engine.exitStatus();
    if (round == 0) {
      duration =
          std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - begin);
    }
    if (status == 1) {
      EXPECT_THAT(logged(), testing::ContainsRegex("signal 9|: Backup failed\\."));
    }
    judge(status, "");
  }
}

TEST_F(KilledRunTest, OnlyOneOfTwentyRuns) {
  engine.installTool("sleep", "exec /usr/bin/sleep 2\n");
  engine.startUnder(
      {"/bin/sh", "-c", "for n in $(seq 20); do ( \"$0\"; echo $? >>\"$HOME/statuses\" ) & done; wait"});
  const auto status = engine.run();
  std::string refused;
  for (int run = 1; run < 20; ++run) refused += "11\n";
  EXPECT_EQ(readTestFile(engine.home() + "/statuses"), refused + "0\n");
  engine.startUnder({});
  judge(status, "", [this] { engine.installTool("sleep", "exit 0\n"); });
}

TEST_F(KilledRunTest, EveryCallFailsOnce) {
  const std::string mark = engine.home() + "/mark";
  for (const int failure : {ENOSPC, EIO, EINTR}) {
    for (unsigned long call = 1;; call += sweep(7, 1)) {
      engine.startUnder({"/usr/bin/env", "LD_PRELOAD=" FAILING_CALLS, "FAULT_FOLDER=" + engine.home(),
                         "FAULT_MARK=" + mark, "FAULT_AT=" + std::to_string(call),
                         "FAULT_ERRNO=" + std::to_string(failure)});
      const auto status = engine.run();
      const std::string failed = readTestFile(mark);
      if (failed.empty()) {
        EXPECT_EQ(status, 0);
        EXPECT_GT(call, 20U);
        break;
      }
      SCOPED_TRACE(failed + ": " + std::strerror(failure));
      engine.startUnder({});
      judge(status, std::strerror(failure), [&] { removeFile(mark); });
    }
  }
}

}  // namespace
}  // namespace corvane
