#include "process/FileLock.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <csignal>
#include <memory>

#include "process/RunTool.h"
#include "tests/support/ScratchFolder.h"

namespace corvane {
namespace {

TEST(FileLock, IsHeldByOneUntilItEnds) {
  const ScratchFolder folder;
  const std::string path = folder.path("made/lock");
  std::string problem;
  auto first = std::make_unique<FileLock>();
  EXPECT_EQ(first->acquire(path, problem), FileLock::Outcome::acquired);
  struct stat status {};
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  EXPECT_EQ(FileLock().acquire(path, problem), FileLock::Outcome::heldByAnother);
  // A program that outlives its starter must not keep the lock.
  const std::string sleeper = runTool({"/bin/sh", "-c", "sleep 1000 >/dev/null 2>&1 & echo $!"}).output;
  first->release();
  EXPECT_EQ(FileLock().acquire(path, problem), FileLock::Outcome::acquired);
  EXPECT_EQ(first->acquire(path, problem), FileLock::Outcome::acquired);
  EXPECT_EQ(first->acquire(path, problem), FileLock::Outcome::acquired);
  first.reset();
  EXPECT_EQ(FileLock().acquire(path, problem), FileLock::Outcome::acquired);
  EXPECT_EQ(problem, "");
  EXPECT_EQ(::kill(std::stoi(sleeper), SIGKILL), 0);
}

TEST(FileLock, RefusesWhatIsNoFile) {
  const ScratchFolder folder;
  std::string problem;
  ASSERT_EQ(::symlink(folder.write("other", "").c_str(), folder.path("link").c_str()), 0);
  for (const std::string& path : {folder.path("link"), folder.makeFolder("folder")}) {
    EXPECT_EQ(FileLock().acquire(path, problem), FileLock::Outcome::failed);
    EXPECT_TRUE(problem.starts_with("cannot lock " + path)) << problem;
  }
}

}  // namespace
}  // namespace corvane
