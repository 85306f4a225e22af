#include "platform/cocoa/Strings.h"

#include <gtest/gtest.h>

#include "platform/cocoa/Guard.h"
#include "process/Utf8Decoder.h"

namespace corvane {
namespace {

class StringsTest : public testing::Test {
 protected:
  ~StringsTest() override { [pool_ drain]; }

 private:
  NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
};

TEST_F(StringsTest, TextCrossesThereAndBackAndWhatIsNoUtf8IsReadAsLatin1) {
  for (const std::string& text : {std::string(), std::string("café ☃ \U0001F600"), std::string("a\0b", 3)})
    EXPECT_EQ(toUtf8(toNSString(text)), text);
  EXPECT_EQ([toNSString("\U0001F600") length], 2U);
  EXPECT_EQ(toUtf8(toNSString("\xE2\x98")), "\u00E2\u0098");
}

TEST_F(StringsTest, NilAndHalfASurrogatePairAreSurvived) {
  EXPECT_EQ(toUtf8(nil), "");
  const unichar broken[] = {'a', 0xD83D, 'b'};
  NSString* string = [NSString stringWithCharacters:broken length:3];
  std::string text;
  EXPECT_TRUE(guarded([&] { text = toUtf8(string); }) == nil);
  EXPECT_TRUE(isUtf8(text)) << text;
}

TEST_F(StringsTest, AnExceptionIsAnsweredAndDestructorsRun) {
  const auto watch = std::make_shared<int>(0);
  NSException* raised = guarded([&] {
    const auto held = watch;
    [[NSArray array] objectAtIndex:5];
  });
  EXPECT_EQ(toUtf8([raised name]), "NSRangeException");
  EXPECT_EQ(watch.use_count(), 1);
}

}  // namespace
}  // namespace corvane
