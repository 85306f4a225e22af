#include "ui/StatusLine.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace corvane
