// What becomes of the bytes of a script's output before they are shown.
#include "process/ControlFilter.h"

#include <gtest/gtest.h>

#include "process/Utf8Decoder.h"

namespace corvane {
namespace {

using namespace std::string_literals;

TEST(ControlFilter, LeavesOnlyTextAndLineBreaks) {
  const std::pair<std::string, std::string> rows[] = {
      {"Grüße\tan\r\nalle\n", "Grüße\tan\r\nalle\n"},
      {"\x1b[31mred\x1b[0m \x1b[?25l\x1b[2Ja\x1b[1;5Hb", "red ab"},
      {"\x1b]0;title\x07text", "text"},
      {"\x1b]8;;http://a\x1b\\text\x1b]8;;\x1b\\", "text"},
      {"\x1bPq#0;2\x1b\\a\x1b_x\x1b\\b", "ab"},
      {"\x1b(Ba\x1b=b\x1b\x63\x63\x1b", "abc"},
      {"a\0b\x07\x63\x08\x64\x7f\x65\x0e"s, "abcde"},
      {"\xc2\x9b\x33\x31mred\xc2\x85z\xc2\xa0ü", "31mredz\xc2\xa0ü"},
      {"\x1b[3ümlaut", "ümlaut"},
      {"\x1b]0;neverBackup completed\nnext\x1b]\a", "0;neverBackup completed\nnext"},
      {"\x1b]" + std::string(5000, 'x') + "\a\x1b]y\az", std::string(5000, 'x') + "z"},
      {"\x1b[12\r\nBackup completed", "\r\nBackup completed"},
  };
  for (const auto& [text, shown] : rows) {
    for (std::size_t cut = 0; cut < text.size(); ++cut) {
      if ((static_cast<unsigned char>(text[cut]) & 0xc0) == 0x80) continue;  // pieces hold whole characters
      ControlFilter filter;
      const std::string first = filter.filter(text.substr(0, cut));
      ASSERT_EQ(first + filter.filter(text.substr(cut)), shown)
          << testing::PrintToString(text) << " cut at " << cut;
    }
  }
}

TEST(Utf8Decoder, JoinsCharactersSplitBetweenPieces) {
  // One to four bytes each, with the first and last of every length.
  const std::string text = "a\x7F\u0080\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000\U0010FFFF\n";
  for (std::size_t piece = 1; piece <= text.size(); ++piece) {
    Utf8Decoder decoder;
    std::string decoded;
    for (std::size_t at = 0; at < text.size(); at += piece) decoded += decoder.decode(text.substr(at, piece));
    EXPECT_EQ(decoded, text) << "in pieces of " << piece;
  }
}

TEST(Utf8Decoder, ReplacesEachRunOfWhatIsNoText) {
  const std::pair<const char*, const char*> rows[] = {
      {"a\x80\xBF\xFE\xFFz\xFF", "a\uFFFDz\uFFFD"},
      {"\xC1\xBFz", "\uFFFDz"},          // overlong in two bytes
      {"\xE0\x9F\xBFz", "\uFFFDz"},      // in three
      {"\xF0\x8F\xBF\xBFz", "\uFFFDz"},  // in four
      {"\xED\xA0\x80z", "\uFFFDz"},      // first surrogate
      {"\xED\xBF\xBFz", "\uFFFDz"},      // last surrogate
      {"\xF4\x90\x80\x80z", "\uFFFDz"},  // above the last character
      {"\xF5\x80\x80\x80z", "\uFFFDz"},
      {"\xF0\x9F\x98\u00E4", "\uFFFD\u00E4"},  // broken off in the middle
      {"Donn\xE9 z", "Donn\uFFFD z"},          // another encoding
      {"a\xED\xA0", "a\uFFFD"},
      {"a\xF0\x9F\x98", "a"},  // the rest may follow
  };
  for (const auto& [bytes, text] : rows) EXPECT_EQ(Utf8Decoder().decode(bytes), text);
  Utf8Decoder decoder;
  EXPECT_EQ(decoder.decode("\xE2\x82"), "");
  EXPECT_EQ(decoder.decode(""), "");
  EXPECT_EQ(decoder.decode("z"), "\uFFFDz");
}

}  // namespace
}  // namespace corvane
