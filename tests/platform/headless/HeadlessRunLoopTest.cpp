#include "platform/headless/HeadlessRunLoop.h"

#include <gmock/gmock.h>
#include <unistd.h>
#include <chrono>

#include "process/Spawn.h"

namespace corvane {
namespace {

using testing::ElementsAre;
using Clock = std::chrono::steady_clock;

class HeadlessRunLoopTest : public testing::Test {
 protected:
  void put(const std::string& bytes) {
    ASSERT_EQ(::write(pipe.writeEnd, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  }

  HeadlessRunLoop loop;
  Pipe pipe;
  std::unique_ptr<RunLoop::Source> one;
  std::unique_ptr<RunLoop::Source> other;
  std::vector<std::string> chunks;
};

TEST_F(HeadlessRunLoopTest, TimerFiresInItsIntervalUntilItsOwnCallbackDestroysIt) {
  const auto start = Clock::now();
  int fired = 0;
  one = loop.repeat(0.05, [&] {
    const double due = 0.05 * ++fired;
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    EXPECT_GE(seconds, due);
    EXPECT_LT(seconds, due + 0.5);
    if (fired == 3) one.reset();
  });
  loop.run();  // ends, since nothing is left
  EXPECT_EQ(fired, 3);
}

TEST_F(HeadlessRunLoopTest, NoCallbackBeginsAfterAnotherDestroyedItsTimer) {
  int fired = 0;
  const auto destroyBoth = [&] {
    ++fired;
    one.reset();
    other.reset();
  };
  one = loop.repeat(0.01, destroyBoth);
  other = loop.repeat(0.01, destroyBoth);
  ::usleep(20000);  // both are due in the same round
  loop.run();
  EXPECT_EQ(fired, 1);
}

TEST_F(HeadlessRunLoopTest, WhatAPipeHoldsComesInOneReadAndItsEndOnce) {
  const std::string full(60000, 'x');
  put(full);
  pipe.closeWriteEnd();
  one = loop.read(pipe.readEnd, [this](std::string_view bytes) {
    chunks.emplace_back(bytes);
    if (chunks.size() > 2) loop.stop();
  });
  loop.run();  // an ended reader is nothing to wait for
  EXPECT_THAT(chunks, ElementsAre(full, ""));
}

TEST_F(HeadlessRunLoopTest, ReaderMayBeDestroyedInItsOwnCallback) {
  put("first");
  one = loop.read(pipe.readEnd, [this, note = std::string("kept")](std::string_view bytes) {
    one.reset();
    chunks.push_back(std::string(bytes) + " " + note);
  });
  loop.run();
  EXPECT_THAT(chunks, ElementsAre("first kept"));
}

}  // namespace
}  // namespace corvane
