#include "platform/headless/HeadlessRunLoop.h"

#include <gmock/gmock.h>
#include <unistd.h>
#include <chrono>

#include "process/Spawn.h"

namespace corvane {
namespace {

using testing::ElementsAre;
using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

class HeadlessRunLoopTest : public testing::Test {
 protected:
  void put(const std::string& bytes) {
    ASSERT_EQ(::write(pipe.writeEnd, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  }
  void readInto(std::vector<std::string>& chunks) {
    reader = loop.read(pipe.readEnd, [&chunks](std::string_view bytes) { chunks.emplace_back(bytes); });
  }

  HeadlessRunLoop loop;
  Pipe pipe;
  std::unique_ptr<RunLoop::Source> reader;
  std::unique_ptr<RunLoop::Source> timer;
};

TEST_F(HeadlessRunLoopTest, TimerFiresInItsIntervalUntilItsOwnCallbackDestroysIt) {
  std::vector<double> fired;
  const auto start = Clock::now();
  timer = loop.repeat(0.05, [&] {
    fired.push_back(secondsSince(start));
    if (fired.size() == 3) timer.reset();
  });
  loop.run();  // ends, since nothing is left
  ASSERT_EQ(fired.size(), 3U);
  for (std::size_t i = 0; i < fired.size(); ++i) {
    EXPECT_GE(fired[i], 0.05 * static_cast<double>(i + 1));
    EXPECT_LT(fired[i], 0.05 * static_cast<double>(i + 1) + 0.5);
  }
}

TEST_F(HeadlessRunLoopTest, NoCallbackBeginsAfterAnotherDestroyedItsTimer) {
  int fired = 0;
  std::unique_ptr<RunLoop::Source> one;
  std::unique_ptr<RunLoop::Source> other;
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
  std::vector<std::string> chunks;
  const std::string full(60000, 'x');
  put(full);
  pipe.closeWriteEnd();
  readInto(chunks);
  int rounds = 0;
  timer = loop.repeat(0.01, [&] {
    if (++rounds == 5) loop.stop();
  });
  loop.run();
  EXPECT_THAT(chunks, ElementsAre(full, ""));
}

TEST_F(HeadlessRunLoopTest, EndedReaderIsNothingToWaitFor) {
  std::vector<std::string> chunks;
  pipe.closeWriteEnd();
  readInto(chunks);
  loop.run();
  EXPECT_THAT(chunks, ElementsAre(""));
}

TEST_F(HeadlessRunLoopTest, ReaderMayBeDestroyedInItsOwnCallback) {
  put("first");
  std::vector<std::string> chunks;
  reader = loop.read(pipe.readEnd, [this, &chunks, note = std::string("kept")](std::string_view bytes) {
    reader.reset();
    chunks.push_back(std::string(bytes) + " " + note);
  });
  loop.run();
  EXPECT_THAT(chunks, ElementsAre("first kept"));
}

}  // namespace
}  // namespace corvane
