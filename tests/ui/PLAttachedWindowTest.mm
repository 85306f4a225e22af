#undef NDEBUG  // with it, the frameworks do not declare their counting of objects
#import <Foundation/NSDebug.h>

#import "ui/PLAttachedWindow.h"

#include <algorithm>
#include <cmath>

#import "tests/support/GuiTest.h"

/// A parent window that tells what it is asked.
@interface AskedWindow : NSWindow {
 @public
  id asked;
}
@end

@implementation AskedWindow
- (void)performClose:(id)sender {
  asked = sender;
}
- (BOOL)validateMenuItem:(NSMenuItem*)item {
  asked = item;
  return NO;
}
@end

namespace corvane {
namespace {

// 300 x 80, with a label.
NSView* makeView() {
  NSTextField* label = [[[NSTextField alloc] initWithFrame:NSMakeRect(20, 46, 260, 20)] autorelease];
  [label setEditable:NO];
  [label setSelectable:NO];
  NSView* view = [[[NSView alloc] initWithFrame:NSMakeRect(0, 0, 300, 80)] autorelease];
  [view addSubview:label];
  return view;
}

PLAttachedWindow* makeWindow(NSPoint point, NSWindow* parent, PLAttachedWindowSide side, CGFloat distance) {
  PLAttachedWindow* window = [[PLAttachedWindow alloc] initWithView:makeView()
                                                    attachedToPoint:point
                                                           inWindow:parent
                                                             onSide:side
                                                         atDistance:distance];
  [window setReleasedWhenClosed:NO];
  return window;
}

void expectFrame(NSWindow* window, CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
  EXPECT_TRUE(NSEqualRects([window frame], NSMakeRect(x, y, width, height)))
      << [NSStringFromRect([window frame]) UTF8String];
}

constexpr Pixel background{0, 128, 128};  // the compositor's is {128, 128, 128}

// As a run uses it. The window is (40, 82) to (360, 166); its body begins at 56.
class PLAttachedWindowTest : public GuiTest {
 protected:
  PLAttachedWindowTest() {
    screen().paintBackground(background);
    [window setHasArrow:0.0];
    [window setMovableByWindowBackground:YES];
    [window setBorderColor:[NSColor colorWithCalibratedWhite:0.93 alpha:0.9]];
    [window setBackgroundColor:[window gradientWindow]];
  }
  ~PLAttachedWindowTest() override {
    virtualDisplay().stopCompositor();
    [window close];
    [window release];
  }
  PLAttachedWindow* window = makeWindow(NSMakePoint(40, 100), nil, PLSideRightRising, 0);
  NSView* view = [[[window contentView] subviews] objectAtIndex:0];
};

TEST_F(PLAttachedWindowTest, StandsBesideThePointWithItsViewInside) {
  expectFrame(window, 40, 82, 320, 84);
  EXPECT_TRUE(NSEqualRects([view frame], NSMakeRect(18, 2, 300, 80)));
  EXPECT_EQ([view window], window);
  [window setHasArrow:1.0];
  [window setArrowHeight:10];
  expectFrame(window, 40, 82, 314, 84);
  [window setFrame:NSMakeRect(0, 0, 500, 500) display:NO];
  expectFrame(window, 40, 82, 314, 84);
}

TEST_F(PLAttachedWindowTest, KeepsCopiesOfItsColours) {
  PLAttachedWindow* plain = [makeWindow(NSMakePoint(500, 300), nil, PLSideTop, 0) autorelease];
  NSColor* before = [plain windowBackgroundColor];
  [plain setBackgroundImage:nil];
  EXPECT_EQ([plain windowBackgroundColor], before);
  NSImage* image = [[[NSImage alloc] initWithSize:NSMakeSize(4, 4)] autorelease];
  [plain setBackgroundImage:image];
  EXPECT_EQ([[plain windowBackgroundColor] patternImage], image);
  [plain setBackgroundColor:nil];
  EXPECT_TRUE([[plain windowBackgroundColor] isEqual:[NSColor clearColor]]);
}

TEST_F(PLAttachedWindowTest, FollowsItsParentWindow) {
  AskedWindow* parent = [[AskedWindow new] autorelease];
  [parent setFrame:NSMakeRect(500, 300, 200, 100) display:NO];
  PLAttachedWindow* child = [makeWindow(NSMakePoint(10, 20), parent, PLSideTopRightward, 5) autorelease];
  expectFrame(child, 492, 325, 304, 100);
  [child performClose:window];
  EXPECT_EQ(parent->asked, window);
  NSMenuItem* item = [[NSMenuItem new] autorelease];
  EXPECT_FALSE([child validateMenuItem:item]);
  EXPECT_EQ(parent->asked, item);
  EXPECT_TRUE([window validateMenuItem:item]);  // it has no parent
  EXPECT_FALSE([window canBecomeMainWindow]);
  EXPECT_TRUE([window hasShadow] && [window isExcludedFromWindowsMenu]);
}

// At (500, 400) there is room below: 304 x 84 without, 304 x 100 with the arrow's space.
TEST_F(PLAttachedWindowTest, FillsInWhatAnInitialiserDoesNotSay) {
  const auto make = [] { return [PLAttachedWindow alloc]; };
  const NSPoint at = NSMakePoint(500, 400);
  const std::pair<PLAttachedWindow*, CGFloat> made[] = {
      {[make() initWithView:makeView() attachedToPoint:at inWindow:nil atDistance:7], 293},
      {[make() initWithView:makeView() attachedToPoint:at onSide:PLSideTop atDistance:7], 407},
      {[make() initWithView:makeView() attachedToPoint:at atDistance:7], 293},
      {[make() initWithView:makeView() attachedToPoint:at inWindow:nil], 300},
      {[make() initWithView:makeView() attachedToPoint:at onSide:PLSideTop], 400},
      {[make() initWithView:makeView() attachedToPoint:at], 300}};
  EXPECT_EQ([make() initWithView:nil attachedToPoint:at], nil);
  for (const auto& [each, bottom] : made) {
    expectFrame(each, 348, bottom, 304, 100);
    [each release];
  }
}

// Where a compositor shows nothing of the window, the mouse meets nothing of it either.
TEST_F(PLAttachedWindowTest, IsDraggedByItsBackground) {
  ASSERT_TRUE(virtualDisplay().startCompositor());
  [window setBackgroundColor:[window gradientWindow]];
  [window orderFrontRegardless];
  ASSERT_TRUE(handleEventsUntil([&] { return screen().pixel(70, 90).red > 200; }));
  const struct {
    int x, y;
    BOOL movable, moves;
    const char* where;
  } grips[] = {{48, 120, YES, NO, "arrow's strip"},
               {57, 164, YES, NO, "corner"},
               {70, 90, YES, YES, "body"},
               {80, 140, YES, YES, "label"},
               {70, 90, NO, NO, "body that is not to move"}};
  for (const auto& grip : grips) {
    SCOPED_TRACE(grip.where);
    [window setMovableByWindowBackground:grip.movable];
    [window setFrameOrigin:NSMakePoint(40, 82)];
    handleEvents();
    screen().moveMouse(grip.x, grip.y);
    const bool isMet = grip.moves || !grip.movable;
    EXPECT_EQ(screen().mouseIsOverWindow(), isMet);
    screen().pressMouse(true);
    ASSERT_TRUE(handleEventsUntil([&] { return !isMet || [window isKeyWindow]; }));
    for (int step = 1; step <= 5; ++step) {
      screen().moveMouse(grip.x + 30 * step, grip.y + 20 * step);
      handleEvents();
    }
    screen().pressMouse(false);
    handleEvents();
    const NSPoint goal = grip.moves ? NSMakePoint(190, 182) : NSMakePoint(40, 82);
    EXPECT_TRUE(handleEventsUntil([&] { return NSEqualPoints([window frame].origin, goal); }))
        << [NSStringFromRect([window frame]) UTF8String];
  }
}

// Of every class, made since the frameworks began to count.
int liveObjects() {
  int count = 0;
  for (Class* each = GSDebugAllocationClassList(); *each; ++each) count += GSDebugAllocationCount(*each);
  return count;
}

// On a screen with a compositor, since each change takes three times as long without one.
TEST_F(PLAttachedWindowTest, BearsManyChangesAndKeepsNothingOfThem) {
  ASSERT_TRUE(virtualDisplay().startCompositor());
  GSDebugAllocationActive(YES);
  int before = 0;
  for (int round = 0; round < 1000; ++round) {
    if (round == 100) before = liveObjects();
    if (round == 900) [window orderFrontRegardless];
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    const CGFloat margin = round % 7, arrow = round % 31, base = round % 23;
    [window setViewMargin:margin];
    [window setArrowHeight:arrow];
    [window setArrowBaseWidth:base];
    [window setHasArrow:round % 2];
    [window setDrawsRoundCornerBesideArrow:0];
    [window setBorderWidth:round % 5];
    [window setBackgroundColor:[NSColor colorWithCalibratedWhite:0.1 alpha:0.5]];
    [window setBorderColor:[NSColor colorWithCalibratedWhite:0.5 alpha:1]];
    const NSRect frame = NSMakeRect(40, 100 - base / 2, 300 + 2 * margin + arrow, 80 + 2 * margin);
    ASSERT_TRUE(handleEventsUntil([&] { return NSEqualSizes([window frame].size, frame.size); }));
    ASSERT_NEAR([window frame].origin.y, frame.origin.y, 0.5);
    ASSERT_TRUE(NSEqualRects([view frame], NSMakeRect(margin + arrow, margin, 300, 80)));
    [pool release];
  }
  GSDebugAllocationActive(NO);
  EXPECT_NEAR(liveObjects(), before, 100);  // each kind of change came about a thousand times
}

// The same looks on a screen that blends windows, and on one that does not.
class PLAttachedWindowLooks : public PLAttachedWindowTest, public testing::WithParamInterface<bool> {
 protected:
  void SetUp() override {
    ASSERT_TRUE(!GetParam() || virtualDisplay().startCompositor());
    [window setBackgroundColor:[window gradientWindow]];
    [window orderFrontRegardless];
  }

  // What shines through: the screen, or the colour of windows.
  [[nodiscard]] double behind() const { return GetParam() ? 128 : 0.93 * 255; }
  [[nodiscard]] double filled(int y) const {
    return 0.9 * 255 * (0.93 + 0.05 * (y - 82 - 0.5) / 83) + 0.1 * behind();
  }
  [[nodiscard]] double bordered(int y) const { return 0.9 * 255 * 0.93 + 0.1 * filled(y); }

  struct Colour {
    double red, green, blue;
  };
  void expectColour(int x, int y, const Colour& colour, int tolerance = 2) {
    EXPECT_TRUE(handleEventsUntil([&] {
      const Pixel pixel = screen().pixel(x, y);
      return std::max({std::abs(pixel.red - colour.red), std::abs(pixel.green - colour.green),
                       std::abs(pixel.blue - colour.blue)}) <= tolerance;
    })) << x
        << "," << y << " is " << screen().pixel(x, y).red << " instead of " << colour.red;
  }
  void expectGrey(int x, int y, double grey) { expectColour(x, y, {grey, grey, grey}); }
  void expectOutside(int x, int y) { expectColour(x, y, {GetParam() ? 128.0 : 0.0, 128, 128}, 0); }
};

TEST_P(PLAttachedWindowLooks, GradientInARoundedBorder) {
  for (const int y : {86, 160}) expectGrey(65, y, filled(y));
  for (const int x : {57, 358}) expectGrey(x, 120, bordered(120));
  for (const int y : {83, 165}) expectGrey(200, y, bordered(y));
  expectColour(200, 82, {219, 225, 235});  // nine tenths of the border over the accent line
  for (const int x : {40, 55, 56, 359}) {
    for (const int y : {82, 165}) expectOutside(x, y);
  }
  expectOutside(55, 120);
  EXPECT_TRUE(screen().save(GetParam() ? "window-blended" : "window-cut"));
}

TEST_P(PLAttachedWindowLooks, AccentLineAtTheBottomWithoutABorder) {
  [window setBorderWidth:0];
  expectColour(200, 82, {0.22 * 255, 0.46 * 255, 0.84 * 255});
  expectGrey(200, 83, filled(83));
  expectGrey(57, 120, filled(120));
}

TEST_P(PLAttachedWindowLooks, ArrowReachesThePointWhileItIsOn) {
  [window setHasArrow:1];
  expectGrey(54, 100, filled(100));
  expectOutside(41, 104);
  expectColour(200, 82, {219, 225, 235});
  EXPECT_TRUE(screen().save(GetParam() ? "arrow-blended" : "arrow-cut"));
  [window setHasArrow:0];
  expectOutside(54, 100);
}

INSTANTIATE_TEST_SUITE_P(Compositor, PLAttachedWindowLooks, testing::Bool());

}  // namespace
}  // namespace corvane
