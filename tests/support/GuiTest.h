// For tests of AppKit classes. The program that runs them has a screen of its own and is an application
// without windows. Thread: main.
#pragma once

#import <AppKit/AppKit.h>
#include <gtest/gtest.h>
#include <functional>

#include "tests/support/VirtualDisplay.h"
#include "tests/support/XScreen.h"

namespace corvane {

/// The program's screen.
VirtualDisplay& virtualDisplay();
XScreen& screen();

/// Lets the application work on the events that have come so far.
void handleEvents();

/// Lets the application work on its events until `isReached`; false when ten seconds were not enough.
[[nodiscard]] bool handleEventsUntil(const std::function<bool()>& isReached);

/// Autoreleased objects live until the end of the test.
class GuiTest : public testing::Test {
 protected:
  GuiTest() : pool_([[NSAutoreleasePool alloc] init]) {}
  ~GuiTest() override { [pool_ release]; }

 private:
  NSAutoreleasePool* pool_;
};

}  // namespace corvane
