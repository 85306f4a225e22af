#include "ui/StatusLine.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

struct LineCase {
  std::string status;
  std::string line;
  std::string whole = line;
};

class StatusLineTest : public testing::TestWithParam<LineCase> {};

TEST_P(StatusLineTest, IsTheLastLineThatSaysSomething) {
  EXPECT_EQ(statusLine(GetParam().status), GetParam().line);
  EXPECT_EQ(wholeStatus(GetParam().status), GetParam().whole);
}

std::string of(int count, char letter) { return std::string(static_cast<std::size_t>(count), letter); }

INSTANTIATE_TEST_SUITE_P(
    Statuses, StatusLineTest,
    testing::Values(LineCase{"", ""}, LineCase{" \n\t\n", ""}, LineCase{"one", "one"},
                    LineCase{"\none\n  two \n\n", "two", "one\n  two"}, LineCase{"\ta b\r\n", "a b"},
                    LineCase{of(500, 'a') + of(500, 'b'), of(500, 'a') + of(500, 'b')},
                    LineCase{of(501, 'a') + of(500, 'b'), of(500, 'a') + "…" + of(499, 'b')}));

struct ShortenCase {
  std::string line;
  std::size_t room;  // bytes that fit
  std::string shown;
};

class ShortenTest : public testing::TestWithParam<ShortenCase> {};

// The ellipsis takes three bytes, and so does each of the last row's letters.
TEST_P(ShortenTest, KeepsBothEndsAndWholeCharacters) {
  const auto fits = [](const std::string& text) { return text.size() <= GetParam().room; };
  EXPECT_EQ(shortenToFit(GetParam().line, fits), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(Lines, ShortenTest,
                         testing::Values(ShortenCase{"abcdef", 6, "abcdef"},
                                         ShortenCase{"abcdefgh", 6, "ab…h"},
                                         ShortenCase{"abcdefgh", 7, "ab…gh"}, ShortenCase{"abcdefgh", 0, "…"},
                                         ShortenCase{"会議資料会議", 12, "会議…議"}));

}  // namespace
}  // namespace corvane
