#import "tests/support/GuiTest.h"

#include <chrono>
#include <cstdlib>
#include <memory>

#include "tests/support/ScratchFolder.h"

namespace corvane {
namespace {

std::unique_ptr<VirtualDisplay> theDisplay;
std::unique_ptr<XScreen> theScreen;

// The colours that the program itself asks for.
NSDictionary* appearance() {
  return [NSDictionary
      dictionaryWithObjectsAndKeys:@"YES", @"GSSuppressAppIcon", @"NO", @"GSAppOwnsMiniwindow", @"NO",
                                   @"GSBackHandlesWindowDecorations", @"0.93 0.93 0.93",
                                   @"windowBackgroundColor", @"0.93 0.93 0.93", @"controlBackgroundColor",
                                   @"0.22 0.46 0.84", @"alternateSelectedControlColor", nil];
}

// Keeps the frameworks' files, and their meeting point with other programs, out of the user's folders.
void moveUserFolders(const ScratchFolder& folder) {
  const auto file = folder.write("GNUstep.conf", "GNUSTEP_USER_DEFAULTS_DIR=" + folder.path() +
                                                     "\nGNUSTEP_USER_DIR_LIBRARY=" + folder.path() + "\n");
  ::setenv("GNUSTEP_CONFIG_FILE", file.c_str(), 1);
  ::setenv("TMP", folder.path().c_str(), 1);
}

class Application : public testing::Environment {
 public:
  void SetUp() override {
    moveUserFolders(folder_);
    theDisplay = std::make_unique<VirtualDisplay>();
    ASSERT_EQ(theDisplay->problem(), "");
    theScreen = std::make_unique<XScreen>(theDisplay->name());
    ASSERT_TRUE(theScreen->isOpen());
    ::setenv("DISPLAY", theDisplay->name().c_str(), 1);
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    [[NSUserDefaults standardUserDefaults] registerDefaults:appearance()];
    [[NSApplication sharedApplication] finishLaunching];
    [pool release];
  }

 private:
  const ScratchFolder folder_;
};

// Waits up to `seconds` for an event and works on it; false when none came.
bool handleEvent(double seconds) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  NSEvent* event = [NSApp nextEventMatchingMask:NSAnyEventMask
                                      untilDate:[NSDate dateWithTimeIntervalSinceNow:seconds]
                                         inMode:NSDefaultRunLoopMode
                                        dequeue:YES];
  const bool came = event != nil;
  if (came) [NSApp sendEvent:event];
  [pool release];
  return came;
}

}  // namespace

VirtualDisplay& virtualDisplay() { return *theDisplay; }
XScreen& screen() { return *theScreen; }

void handleEvents() {
  while (handleEvent(0)) continue;
}

bool handleEventsUntil(const std::function<bool()>& isReached) {
  const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!isReached()) {
    if (std::chrono::steady_clock::now() > limit) return false;
    handleEvent(0.01);
  }
  return true;
}

}  // namespace corvane

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  testing::AddGlobalTestEnvironment(new corvane::Application);
  return RUN_ALL_TESTS();
}
