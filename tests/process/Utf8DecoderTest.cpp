#include "process/Utf8Decoder.h"

#include <gtest/gtest.h>
#include <vector>

namespace corvane {
namespace {

using namespace std::string_literals;

TEST(Utf8Decoder, JoinsCharactersSplitBetweenPieces) {
  // One to four bytes each, with the first and last of every length.
  const std::string text = "a\x7F\u0080\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000\U0010FFFF\n";
  for (std::size_t first = 0; first <= text.size(); ++first) {
    for (std::size_t second = first; second <= text.size(); ++second) {
      Utf8Decoder decoder;
      std::string decoded = decoder.decode(text.substr(0, first));
      decoded += decoder.decode(text.substr(first, second - first));
      decoded += decoder.decode(text.substr(second));
      ASSERT_EQ(decoded, text) << "split at " << first << " and " << second;
    }
  }
}

TEST(Utf8Decoder, ReplacesEachRunOfWhatIsNoText) {
  const std::pair<std::string, std::string> cases[] = {
      {"", ""},
      {"a\0b"s, "a\0b"s},
      {"a\xFFz", "a\uFFFDz"},
      {"a\x80\xBF\xFE\xFFz", "a\uFFFDz"},
      {"\xFFz\xFF", "\uFFFDz\uFFFD"},
      {"\xC1\xBFz", "\uFFFDz"},          // overlong in two bytes
      {"\xE0\x9F\xBFz", "\uFFFDz"},      // in three
      {"\xF0\x8F\xBF\xBFz", "\uFFFDz"},  // in four
      {"\xED\xA0\x80z", "\uFFFDz"},      // first surrogate
      {"\xED\xBF\xBFz", "\uFFFDz"},      // last surrogate
      {"\xF4\x90\x80\x80z", "\uFFFDz"},  // above the last character
      {"\xF5\x80\x80\x80z", "\uFFFDz"},
      {"\xE2\x82z", "\uFFFDz"},  // broken off in the middle
      {"\xF0\x9F\x98\u00E4", "\uFFFD\u00E4"},
      {"Donn\xE9 z", "Donn\uFFFD z"},  // another encoding
  };
  for (const auto& [bytes, text] : cases) EXPECT_EQ(Utf8Decoder().decode(bytes), text);
}

TEST(Utf8Decoder, HoldsBackAnUnfinishedCharacterOnly) {
  const std::pair<const char*, const char*> cases[] = {
      {"a\xC3", "a"}, {"a\xE2", "a"}, {"a\xE2\x82", "a"}, {"a\xF0\x9F\x98", "a"}, {"a\xED\xA0", "a\uFFFD"}};
  for (const auto& [bytes, text] : cases) EXPECT_EQ(Utf8Decoder().decode(bytes), text);
  Utf8Decoder decoder;
  EXPECT_EQ(decoder.decode("\xE2\x82"), "");
  EXPECT_EQ(decoder.decode(""), "");
  EXPECT_EQ(decoder.decode("z"), "\uFFFDz");  // it was none after all
  EXPECT_EQ(decoder.decode("\xAC"), "\uFFFD");
}

}  // namespace
}  // namespace corvane
