#include "schedule/CrontabText.h"

#include <gtest/gtest.h>
#include <cstdlib>

#include "schedule/TextEncodings.h"

namespace corvane {
namespace {

// The positions were counted by hand; an emoji is two units.
TEST(CrontabText, JobsAreTakenOut) {
  const std::pair<std::u16string, std::u16string> cases[] = {
      {u"1 ours\n", u"\n"},
      {u"1 ours\nb\n", u"\nb\n"},
      {u"a\n1 ours x\nb\n", u"a\nb\n"},
      {u"a\n1 ours\n", u"a\n"},
      {u"a\n1 ours", u"a"},
      {u"# see ours\nb\n", u"\nb\n"},
      {u"#😀 é\n1 ours\nb\n", u"#😀 é\nb\n"},
      {u"ours 1\n \tours ours\n", u"ours 1\n \tours ours\n"},      // begin with the name
      {u"a\n\n \t\u00A0\u3000\n\u200B\n 1 ours\nb\n", u"a\nb\n"},  // blank lines go with it
      {u"  1 ours\r\nb\r\n", u"\nb\r\n"},
      {u"\r\nb\n", u"b\n"},
      {u"\rb\n", u"\rb\n"},
      {u" \n\n", u" \n\n"},
      // Several lines: [0,9) goes first, [9,16) is then "onger l"; 16 lies beyond the 13 units left.
      {u"1 ours 😀\n2 ours\nlonger line\n", u"\n2 ours\nline\n"},
      {u"1 ours\n2 ours\n", u"\n2 our"},                  // [6,13) of 8 units
      {u"12345678 ours\nb\n2 ours\n", u"\nb\n2 ours\n"},  // 13 lies beyond the 10 units left
      // [0,6) goes first, [6,13) is then "s\n3 our"; of [13,20) only "s\n5\n" is there.
      {u"1 ours\n2 ours\n3 ours\n4 ours\n5\n", u"\n2 ours\n4 our"}};
  for (const auto& [listing, expected] : cases)
    EXPECT_EQ(withoutJobs(listing, u"ours"), expected) << *utf8FromUtf16(listing);
  EXPECT_EQ(withoutJobs(u"a b\n", u""), u"a b\n");
}

TEST(CrontabText, ANewJobComesFirstAndEmptyLinesGo) {
  EXPECT_EQ(withJobInFront(u"j\n", u"\nb\n\n\n\nc\n"), u"j\nb\nc\n");
  EXPECT_EQ(withJobInFront(u"\n\nj", u"b \n \n"), u"\njb \n \n");
}

TEST(TextEncodings, ConvertWhatIsSoundOnly) {
  const std::u16string units{0x61, 0xE9, 0x20AC, 0xD83D, 0xDE00};
  const std::string bytes = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
  EXPECT_EQ(utf16FromUtf8(bytes), units);
  EXPECT_EQ(utf8FromUtf16(units), bytes);
  for (const char* broken : {"\xC3", "a\xFF", "\xED\xA0\x80"}) EXPECT_FALSE(utf16FromUtf8(broken));
  for (const std::u16string half : {u"\xD83D", u"\xDE00", u"\xD83Dx", u"\xDE00\xD83D"}) {
    EXPECT_FALSE(utf8FromUtf16(half));
  }
  ::setenv("LC_ALL", "C.UTF-8", 1);
  EXPECT_EQ(localeBytesFromUtf16(units), bytes);
  ::setenv("LC_ALL", "C", 1);
  EXPECT_EQ(localeBytesFromUtf16(u"a"), "a");
  EXPECT_FALSE(localeBytesFromUtf16(u"é"));
  ::unsetenv("LC_ALL");
  EXPECT_EQ(narrowed(widened("a\xFF")), "a\xFF");
}

}  // namespace
}  // namespace corvane
