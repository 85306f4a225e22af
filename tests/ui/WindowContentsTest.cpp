// What the window shows: its status line, its bars and its gradient.
#include <gtest/gtest.h>
#include <cmath>
#include <memory>

#include "ui/ControlShapes.h"
#include "ui/StatusLine.h"
#include "ui/WindowGradient.h"

namespace corvane {
namespace {

std::string of(int count, char letter) { return std::string(static_cast<std::size_t>(count), letter); }

TEST(StatusLineTest, IsTheLastLineThatSaysSomething) {
  const struct {
    std::string status, line, whole;
  } rows[] = {{"", "", ""},
              {" \n\t\n", "", ""},
              {"one", "one", "one"},
              {"\none\n  two \n\n", "two", "one\n  two"},
              {"\ta b\r\n", "a b", "a b"},
              {of(999, 'a') + "bc", of(500, 'a') + "…" + of(497, 'a') + "bc",
               of(500, 'a') + "…" + of(497, 'a') + "bc"},
              {of(998, 'a') + "bc", of(998, 'a') + "bc", of(998, 'a') + "bc"}};
  for (const auto& row : rows) {
    EXPECT_EQ(statusLine(row.status), row.line);
    EXPECT_EQ(wholeStatus(row.status), row.whole);
  }
}

// The ellipsis takes three bytes, and so does each of the last row's letters.
TEST(ShortenTest, KeepsBothEndsAndWholeCharacters) {
  const struct {
    std::string line;
    std::size_t room;  // bytes that fit
    std::string shown;
  } rows[] = {{"abcdef", 6, "abcdef"},
              {"abcdefgh", 6, "ab…h"},
              {"abcdefgh", 7, "ab…gh"},
              {"abcdefgh", 0, "…"},
              {"会議資料会議", 12, "会議…議"}};
  for (const auto& row : rows) {
    EXPECT_EQ(shortenToFit(row.line, [&](const auto& text) { return text.size() <= row.room; }), row.shown);
  }
}

TEST(ControlShapesTest, ABarIsNeverFilledBeyondItsEnds) {
  const Rect bar{10, 5, 200, 12};
  EXPECT_EQ(filledPart(bar, 0.25), (Rect{10, 5, 50, 12}));
  EXPECT_EQ(filledPart(bar, -1), (Rect{10, 5, 0, 12}));
  EXPECT_EQ(filledPart(bar, INFINITY), bar);
  EXPECT_EQ(filledPart(bar, NAN), (Rect{10, 5, 0, 12}));
}

TEST(ControlShapesTest, StripesCoverTheBarAtEveryStepAndComeAround) {
  const Rect bar{10, 5, 200, 12};
  for (int step = -1; step <= kStripeSteps; ++step) {
    const auto all = stripes(bar, step);
    ASSERT_FALSE(all.empty());
    EXPECT_LE(all.front().corners[2].x, bar.x + 16) << "a gap at the left end";
    EXPECT_GE(all.back().corners[1].x, bar.x + bar.width - 16) << "a gap at the right end";
  }
  EXPECT_EQ(stripes(bar, 0).front().corners[0], stripes(bar, kStripeSteps).front().corners[0]);
  EXPECT_LT(stripes(bar, 0).front().corners[0].x, stripes(bar, 1).front().corners[0].x);
}

TEST(WindowGradientTest, GoesEvenlyFromStartToEnd) {
  const std::unique_ptr<Length, void (*)(void*)> record(
      makeGradientRecord({0, 0.5, 1, 0.9}, {1, 0.5, 0, 0.1}), releaseGradientRecord);
  ASSERT_NE(record, nullptr);
  const Length rows[][5] = {{0, 0, 0.5, 1, 0.9}, {0.25, 0.25, 0.5, 0.75, 0.7}, {1, 1, 0.5, 0, 0.1}};
  for (const auto& row : rows) {
    Length colour[4] = {};
    evaluateGradient(record.get(), row, colour);
    for (int i = 0; i < 4; ++i) EXPECT_NEAR(colour[i], row[i + 1], 1e-5) << row[0];
  }
}

}  // namespace
}  // namespace corvane
