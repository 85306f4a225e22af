#include "process/ControlFilter.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using namespace std::string_literals;

struct Case {
  std::string text;
  std::string shown;
};
const Case kCases[] = {
    {"Grüße\tan\r\nalle\n", "Grüße\tan\r\nalle\n"},
    {"\x1b[31mred\x1b[0m", "red"},
    {"\x1b[?25l\x1b[2Ja\x1b[1;5Hb", "ab"},
    {"\x1b]0;title\x07text", "text"},
    {"\x1b]8;;http://a\x1b\\text\x1b]8;;\x1b\\", "text"},
    {"\x1bPq#0;2\x1b\\a\x1b_x\x1b\\b", "ab"},
    {"\x1b(Ba\x1b=b\x1b"
     "cc\x1b",
     "abc"},
    {"a\0b\x07"
     "c\x08"
     "d\x7f"
     "e\x0e"s,
     "abcde"},
    {"\xc2\x9b"
     "31mred\xc2\x85"
     "z\xc2\xa0ü",
     "31mredz\xc2\xa0ü"},
    {"\x1b[3ümlaut", "ümlaut"},
    {"\x1b]0;never ended\nBackup completed", "\nBackup completed"},
    {"\x1b[12\r\nBackup completed", "\r\nBackup completed"},
};

TEST(ControlFilter, LeavesOnlyTextAndLineBreaks) {
  for (const auto& [text, shown] : kCases) {
    EXPECT_EQ(withoutControls(text), shown) << testing::PrintToString(text);
    for (std::size_t cut = 0; cut < text.size(); ++cut) {
      if ((static_cast<unsigned char>(text[cut]) & 0xc0) == 0x80) continue;  // pieces hold whole characters
      ControlFilter filter;
      const std::string first = filter.filter(text.substr(0, cut));
      ASSERT_EQ(first + filter.filter(text.substr(cut)), shown)
          << testing::PrintToString(text) << " cut at " << cut;
    }
  }
}

}  // namespace
}  // namespace corvane
