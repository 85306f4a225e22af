#include "platform/headless/HeadlessRunLoop.h"

#include <gmock/gmock.h>
#include <unistd.h>
#include <chrono>

#include "process/Spawn.h"

namespace corvane {
namespace {

class HeadlessRunLoopTest : public testing::Test {
 protected:
  HeadlessRunLoop loop;
  std::unique_ptr<RunLoop::Source> one;
  std::unique_ptr<RunLoop::Source> other;
};

TEST_F(HeadlessRunLoopTest, TimerFiresInItsIntervalUntilItsOwnCallbackDestroysIt) {
  std::vector<double> times;
  one = loop.repeat(0.05, [&, start = std::chrono::steady_clock::now()] {
    times.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    if (times.size() == 3) one.reset();
  });
  loop.run();  // ends, since nothing is left
  EXPECT_THAT(times, testing::ElementsAre(testing::Ge(0.05), testing::Ge(0.1),
                                          testing::AllOf(testing::Ge(0.15), testing::Lt(0.65))));
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

TEST_F(HeadlessRunLoopTest, WhatAPipeHoldsComesInOneReadAndItsEndOnceOrNeverToWhoLetsGo) {
  const std::string full(60000, 'x');
  for (const bool letsGo : {false, true}) {
    Pipe pipe;
    ASSERT_EQ(::write(pipe.writeEnd, full.data(), full.size()), 60000);
    pipe.closeWriteEnd();
    std::vector<std::string> chunks;
    one = loop.read(pipe.readEnd, [&, letsGo, note = std::string("kept")](std::string_view bytes) {
      if (letsGo) one.reset();
      chunks.push_back(std::string(bytes) + note);
      if (chunks.size() > 2) loop.stop();
    });
    loop.run();  // an ended reader is nothing to wait for
    EXPECT_EQ(chunks.size(), letsGo ? 1U : 2U);
    EXPECT_EQ(chunks[0] + chunks.back(), full + "kept" + (letsGo ? full : "") + "kept");
  }
}

}  // namespace
}  // namespace corvane
