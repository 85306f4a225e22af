#include "platform/cocoa/Strings.h"

#include <gtest/gtest.h>

#include "platform/cocoa/Guard.h"
#include "platform/plist/Texts.h"

namespace corvane {
namespace {

class StringsTest : public testing::Test {
 protected:
  void SetUp() override { pool_ = [[NSAutoreleasePool alloc] init]; }
  void TearDown() override { [pool_ drain]; }

 private:
  NSAutoreleasePool* pool_ = nil;
};

TEST_F(StringsTest, TextCrossesThereAndBack) {
  const std::string texts[] = {"", "plain", "café ☃ \U0001F600", std::string("a\0b", 3)};
  for (const auto& text : texts) {
    NSString* string = toNSString(text);
    ASSERT_TRUE(string != nil);
    EXPECT_EQ(toUtf8(string), text);
  }
  EXPECT_EQ([toNSString("\U0001F600") length], 2U);
}

TEST_F(StringsTest, WhatIsNoUtf8IsReadAsLatin1) {
  EXPECT_EQ(toUtf8(toNSString("caf\xE9")), "café");
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
  bool destroyed = false;
  struct Watch {
    bool& flag;
    ~Watch() { flag = true; }
  };
  NSException* raised = guarded([&] {
    const Watch watch{destroyed};
    [[NSArray array] objectAtIndex:5];
  });
  EXPECT_EQ(toUtf8([raised name]), "NSRangeException");
  EXPECT_TRUE(destroyed);
}

}  // namespace
}  // namespace corvane
