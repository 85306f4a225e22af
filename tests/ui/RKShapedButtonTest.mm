#import "ui/RKShapedButton.h"

#include <objc/runtime.h>
#include <array>
#include <atomic>
#include <future>

#import "tests/support/GuiTest.h"
#include "tests/support/StandardError.h"
#include "tests/support/WaitFor.h"
#import "ui/RKDarkenedImage.h"

/// Counts the presses of the mouse that have reached it.
@interface WatchedWindow : NSWindow {
 @public
  std::atomic<int> presses;
}
@end

@implementation WatchedWindow
- (void)sendEvent:(NSEvent*)event {
  if ([event type] == NSLeftMouseDown) ++presses;
  [super sendEvent:event];
}
@end

namespace corvane {
namespace {

// 20 x 20, filled with `bytes` again and again; the fourth one is less by 1 in the left half: in the first 10
// pixels, or 40 bytes, of each row of 80.
NSImage* makeImage(std::array<std::uint8_t, 4> bytes, NSBitmapFormat format = {}, BOOL isPlanar = NO) {
  NSBitmapImageRep* bitmap = [NSBitmapImageRep alloc];
  // clang-format off
  [bitmap initWithBitmapDataPlanes:NULL pixelsWide:20 pixelsHigh:20 bitsPerSample:8 samplesPerPixel:4
      hasAlpha:YES isPlanar:isPlanar colorSpaceName:NSCalibratedRGBColorSpace bitmapFormat:format
      bytesPerRow:0 bitsPerPixel:0];
  // clang-format on
  for (int i = 0; i < [bitmap bytesPerPlane]; ++i)
    [bitmap bitmapData][i] = static_cast<std::uint8_t>(bytes[i % 4] - (i % 80 < 40 && i % 4 == 3));
  NSImage* image = [[[NSImage alloc] initWithSize:NSMakeSize(20, 20)] autorelease];
  [image addRepresentation:[bitmap autorelease]];
  return image;
}

std::vector<int> bytesAt(NSImage* image, int x, int y) {
  NSBitmapImageRep* bitmap = [[image representations] objectAtIndex:0];
  const std::uint8_t* pixel = [bitmap bitmapData] + [bitmap bytesPerRow] * y + 4 * x;
  return {pixel, pixel + 4};
}

NSColor* graphiteTint(id, SEL, NSControlTint) {
  return [NSColor colorWithCatalogName:@"System" colorName:@"graphiteControlTintColor"];
}

// GNUstep itself knows no other tint than blue.
void setTint(bool isGraphite) {
  static const Method method = class_getClassMethod([NSColor class], @selector(colorForControlTint:));
  static const IMP blue = method_getImplementation(method);
  [[NSColorList colorListNamed:@"System"] setColor:[NSColor grayColor] forKey:@"graphiteControlTintColor"];
  method_setImplementation(method, isGraphite ? reinterpret_cast<IMP>(graphiteTint) : blue);
}

// The button is the square from (110, 110) to (130, 130) of the screen.
class RKShapedButtonTest : public GuiTest {
 protected:
  RKShapedButtonTest() {
    [shape setName:@"Shape"];
    [aqua setName:@"ShapeAqua"];
    [graphite setName:@"ShapeGraphite"];
    NSMutableArray* loaded = [NSMutableArray array];
    NSDictionary* names =
        [NSDictionary dictionaryWithObjectsAndKeys:clicks, NSNibOwner, loaded, NSNibTopLevelObjects, nil];
    [NSBundle loadNibFile:@SHAPED_BUTTON_XIB externalNameTable:names withZone:NULL];
    for (NSUInteger i = 0; i < [loaded count]; ++i) {
      if ([[loaded objectAtIndex:i] isKindOfClass:[RKShapedButton class]]) button = [loaded objectAtIndex:i];
    }
    EXPECT_NE(button, nil);
    [window setReleasedWhenClosed:NO];
    [[window contentView] addSubview:button];
  }
  ~RKShapedButtonTest() override {
    setTint(false);
    for (NSImage* image : {shape, aqua, graphite}) [image setName:nil];
    [window close];
    [window release];
    [button release];
  }

  // The frameworks notice that a colour of the system is another one than before, and announce it.
  void changeColours() {
    NSString* colour = ++changes % 2 ? @"0.2 0.3 0.4" : @"0 0 0";
    [[NSUserDefaults standardUserDefaults]
        registerDefaults:[NSDictionary dictionaryWithObject:colour forKey:@"selectedTextColor"]];
    [[NSNotificationCenter defaultCenter] postNotificationName:NSUserDefaultsDidChangeNotification
                                                        object:nil];
  }

  inline static int changes = 0;
  NSImage* shape = makeImage({120, 60, 0, 128});
  NSImage* aqua = makeImage({0, 0, 120, 128});
  NSImage* graphite = makeImage({90, 90, 90, 128});
  NSMutableArray* clicks = [NSMutableArray array];  // every click adds its sender
  WatchedWindow* window = [[WatchedWindow alloc] initWithContentRect:NSMakeRect(100, 100, 200, 100)
                                                           styleMask:NSBorderlessWindowMask
                                                             backing:NSBackingStoreBuffered
                                                               defer:NO];
  RKShapedButton* button = nil;
};

// Half transparent on white: 127 more than the byte. Dark: 85 less of each, as the highlight is a grey of
// two thirds. Dim: four tenths of the way from white to plain.
constexpr Pixel plain{247, 187, 127}, pressed{127, 127, 247}, pressedDark{127, 127, 162}, dim{252, 228, 204};

TEST_F(RKShapedButtonTest, ShowsItsPicturesAndTakesClicksOnTheSolidOnes) {
  const struct {
    int x;
    NSButtonType type;
    int state;
    BOOL isEnabled;
    Pixel before, during, after;
    NSUInteger clicks;  // so far
  } rows[] = {{119, NSMomentaryChangeButton, 0, YES, plain, plain, plain, 0},
              {121, NSToggleButton, 1, NO, dim, dim, dim, 0},
              {121, NSMomentaryChangeButton, 0, YES, plain, pressed, plain, 1},
              {121, NSMomentaryChangeButton, 1, YES, plain, pressed, plain, 2},
              {121, NSToggleButton, 0, YES, plain, pressedDark, pressed, 3},
              {121, NSToggleButton, 1, YES, pressed, pressedDark, plain, 4}};
  [window setBackgroundColor:[NSColor whiteColor]];
  [window orderFrontRegardless];
  const auto shows = [](Pixel a) {
    const Pixel b = screen().pixel(125, 125);
    return std::abs(a.red - b.red) + std::abs(a.green - b.green) + std::abs(a.blue - b.blue) < 4;
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    [button setButtonType:row.type];
    [button setEnabled:row.isEnabled];
    [button setState:row.state];
    screen().moveMouse(row.x, 120);
    EXPECT_TRUE(handleEventsUntil([&] { return shows(row.before); }));
    // A pressed button handles its events itself until it is let go.
    auto user = std::async(std::launch::async, [&] {
      screen().pressMouse(true);
      const bool shown = waitFor([&] { return window->presses > &row - rows; }) &&
                         waitFor([&] { return shows(row.during); });
      // GNUstep shows the press before it begins to wait for the end of it, and can miss one that comes
      // between.
      std::this_thread::sleep_for(std::chrono::milliseconds(150));
      screen().pressMouse(false);
      return shown;
    });
    while (user.wait_for(std::chrono::seconds(0)) != std::future_status::ready) handleEvents();
    EXPECT_TRUE(user.get());
    EXPECT_TRUE(handleEventsUntil([&] { return shows(row.after) && [clicks count] == row.clicks; }))
        << [clicks count] << " clicks";
  }
}

TEST_F(RKShapedButtonTest, FollowsTheTintOfTheSystem) {
  EXPECT_EQ([button alternateImage], aqua);
  setTint(true);
  changeColours();
  EXPECT_EQ([button alternateImage], graphite);
  [graphite setName:nil];
  [button setImage:makeImage({255, 130, 128, 128})];
  changeColours();
  EXPECT_EQ(bytesAt([button alternateImage], 19, 19), std::vector({127, 2, 0, 128}));
  setTint(false);
  changeColours();
  EXPECT_EQ([button alternateImage], aqua);
  [aqua setName:nil];
  changeColours();
  EXPECT_EQ(bytesAt([button alternateImage], 0, 0), std::vector({0, 0, 127, 127}));
}

TEST_F(RKShapedButtonTest, MadeInCodeItFollowsUntilItsEnd) {
  RKShapedButton* made = [[RKShapedButton alloc] init];
  [shape setName:@"ShapeAqua on Aqua"];
  [made setAlternateImage:shape];
  EXPECT_TRUE([[made imageBaseName] isEqualToString:@"Shape"]);
  [made setAlternateImage:graphite];
  changeColours();
  EXPECT_EQ([made alternateImage], aqua);
  [made release];
  changeColours();
}

TEST_F(RKShapedButtonTest, IsHitInsideOnlyAndWhereNoPictureForbids) {
  const StandardError log;
  for (const NSPoint hit : {NSPoint{20, 10.5}, NSPoint{29.9, 30}}) EXPECT_EQ([button hitTest:hit], button);
  for (const NSPoint miss : {NSPoint{25, 10}, NSPoint{30, 20}, NSPoint{19.9, 20}, NSPoint{NAN, 20}}) {
    EXPECT_EQ([button hitTest:miss], nil) << miss.x << ',' << miss.y;
  }
  // The lower ten rows of the picture are cleared. What lies above the middle of both is at y 25.
  NSBitmapImageRep* bitmap = [[shape representations] objectAtIndex:0];
  std::fill_n(
      [bitmap bitmapData] + 10 * [bitmap bytesPerRow], 10 * [bitmap bytesPerRow], std::uint8_t { 0 });
  for (const CGFloat y : {15, 25}) EXPECT_EQ([button hitTest:NSMakePoint(22, y)], y > 20 ? button : nil);
  NSImage* custom = [[NSImage new] autorelease];
  [custom addRepresentation:[[NSCustomImageRep new] autorelease]];
  NSImage* noMask[] = {[[NSImage new] autorelease], custom, nil, makeImage({}, {}, YES)};
  for (NSImage* image : noMask) {
    EXPECT_EQ(log.text(), "");
    [button setImage:image];
    EXPECT_EQ([button hitTest:NSMakePoint(12, 20)], button);
  }
  EXPECT_TRUE(log.text().ends_with("] planar bitmap formats not supported\n")) << log.text();
  [button setHidden:YES];
  EXPECT_EQ([button hitTest:NSMakePoint(12, 20)], nil);
}

TEST_F(RKShapedButtonTest, DarkenedImagesKeepSizeAndFormat) {
  NSImage* image = makeImage({9, 8, 7, 6}, NSAlphaFirstBitmapFormat);
  [image setSize:NSMakeSize(2.5, 1.9)];
  NSColor* white = [NSColor whiteColor];
  NSImage* dark = [image darkenedImageWithColor:white];
  EXPECT_TRUE(NSEqualSizes([dark size], NSMakeSize(2.5, 1.9)));
  EXPECT_EQ(bytesAt(dark, 1, 0), std::vector({8, 7, 6, 5}));
  NSBitmapImageRep* bitmap = [[dark representations] objectAtIndex:0];
  EXPECT_TRUE([bitmap pixelsWide] == 2 && [bitmap pixelsHigh] == 1);
  EXPECT_EQ([bitmap bitmapFormat], NSAlphaFirstBitmapFormat);
  [image setSize:NSMakeSize(0.5, 9)];
  EXPECT_EQ([[[image darkenedImageWithColor:white] representations] count], 0U);
  [image setSize:NSMakeSize(1e6, 1e6)];  // pixels that would take 4 terabytes
  EXPECT_EQ([image darkenedImageWithColor:white], nil);
  EXPECT_EQ([shape darkenedImageWithColor:[NSColor colorWithPatternImage:shape]], nil);
  EXPECT_EQ([[[NSImage new] autorelease] darkenedImageWithColor:white], nil);
}

}  // namespace
}  // namespace corvane
