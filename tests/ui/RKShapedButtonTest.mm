#import "ui/RKShapedButton.h"

#include <objc/runtime.h>
#include <array>
#include <future>

#import "tests/support/GuiTest.h"
#include "tests/support/StandardError.h"
#include "tests/support/WaitFor.h"
#import "ui/RKDarkenedImage.h"

@interface ButtonOwner : NSObject {
 @public
  RKShapedButton* button;
  int clicks;
}
@end

@implementation ButtonOwner
- (void)clicked:(id)sender {
  ++clicks;
}
@end

namespace corvane {
namespace {

struct Layout {
  int bits = 8, samples = 4, format = 0;
  BOOL alpha = YES, planar = NO;
};

// 20 x 20, filled with `bytes` again and again; the fourth one is less by 1 in the left half.
NSImage* makeImage(const Layout& of, std::array<std::uint8_t, 4> bytes) {
  NSBitmapImageRep* bitmap = [NSBitmapImageRep alloc];
  // clang-format off
  bitmap = [[bitmap initWithBitmapDataPlanes:NULL pixelsWide:20 pixelsHigh:20
      bitsPerSample:of.bits samplesPerPixel:of.samples hasAlpha:of.alpha isPlanar:of.planar
      colorSpaceName:NSCalibratedRGBColorSpace bitmapFormat:NSBitmapFormat(of.format)
      bytesPerRow:0 bitsPerPixel:0] autorelease];
  // clang-format on
  for (int i = 0; i < [bitmap bytesPerPlane]; ++i) {
    [bitmap bitmapData][i] = static_cast<std::uint8_t>(bytes[i % 4] - (i % 80 < 40 && i % 4 == 3));
  }
  NSImage* image = [[[NSImage alloc] initWithSize:NSMakeSize(20, 20)] autorelease];
  [image addRepresentation:bitmap];
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

// GNUstep knows no other tint than blue.
class Graphite {
 public:
  Graphite() : before_(method_setImplementation(tint_, reinterpret_cast<IMP>(graphiteTint))) {
    [[NSColorList colorListNamed:@"System"] setColor:[NSColor colorWithCalibratedWhite:0.5 alpha:1]
                                              forKey:@"graphiteControlTintColor"];
  }
  ~Graphite() { method_setImplementation(tint_, before_); }

 private:
  const Method tint_ = class_getClassMethod([NSColor class], @selector(colorForControlTint:));
  const IMP before_;
};

// The button is the square from (110, 110) to (130, 130) of the screen.
class RKShapedButtonTest : public GuiTest {
 protected:
  RKShapedButtonTest() {
    [shape setName:@"Shape"];
    [aqua setName:@"ShapeAqua"];
    [graphite setName:@"ShapeGraphite"];
    NSDictionary* names = [NSDictionary dictionaryWithObject:owner forKey:NSNibOwner];
    const BOOL loaded = [NSBundle loadNibFile:@SHAPED_BUTTON_XIB externalNameTable:names withZone:NULL];
    EXPECT_TRUE(loaded);
    button = owner->button;
    [window setReleasedWhenClosed:NO];
    [[window contentView] addSubview:button];
  }
  ~RKShapedButtonTest() override {
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
  NSImage* shape = makeImage({}, {120, 60, 0, 128});
  NSImage* aqua = makeImage({}, {0, 0, 120, 128});
  NSImage* graphite = makeImage({}, {90, 90, 90, 128});
  ButtonOwner* owner = [[[ButtonOwner alloc] init] autorelease];
  NSWindow* window = [[NSWindow alloc] initWithContentRect:NSMakeRect(100, 100, 200, 100)
                                                 styleMask:NSBorderlessWindowMask
                                                   backing:NSBackingStoreBuffered
                                                     defer:NO];
  RKShapedButton* button = nil;
};

bool near(Pixel a, Pixel b) {
  return std::abs(a.red - b.red) + std::abs(a.green - b.green) + std::abs(a.blue - b.blue) < 4;
}

// Half transparent on white: 127 more than the byte.
constexpr Pixel plain{247, 187, 127}, pressed{127, 127, 247}, pressedDark{127, 127, 162}, dim{252, 228, 204};

TEST_F(RKShapedButtonTest, ShowsItsPicturesAndTakesClicksOnTheSolidOnes) {
  const struct {
    int x;
    NSButtonType type;
    BOOL isEnabled;
    int state;
    Pixel before, during, after;
    int clicks;
  } rows[] = {
      {119, NSMomentaryChangeButton, YES, 0, plain, plain, plain, 0},
      {121, NSMomentaryChangeButton, YES, 0, plain, pressed, plain, 1},
      {121, NSMomentaryChangeButton, YES, 1, plain, pressed, plain, 1},
      {121, NSToggleButton, YES, 0, plain, pressedDark, pressed, 1},
      {121, NSToggleButton, YES, 1, pressed, pressedDark, plain, 1},
      {121, NSToggleButton, NO, 1, dim, dim, dim, 0},
  };
  [window setBackgroundColor:[NSColor whiteColor]];
  [window orderFrontRegardless];
  const auto shows = [](Pixel colour) { return near(screen().pixel(125, 125), colour); };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    [button setButtonType:row.type];
    [button setEnabled:row.isEnabled];
    [button setState:row.state];
    owner->clicks = 0;
    screen().moveMouse(row.x, 120);
    EXPECT_TRUE(handleEventsUntil([&] { return shows(row.before); }));
    // A pressed button handles its events itself until it is let go.
    auto user = std::async(std::launch::async, [&] {
      screen().pressMouse(true);
      const bool shown = waitFor([&] { return shows(row.during); });
      screen().pressMouse(false);
      return shown;
    });
    while (user.wait_for(std::chrono::seconds(0)) != std::future_status::ready) handleEvents();
    EXPECT_TRUE(user.get());
    EXPECT_TRUE(handleEventsUntil([&] { return shows(row.after) && owner->clicks == row.clicks; }))
        << owner->clicks << " clicks";
  }
}

TEST_F(RKShapedButtonTest, FollowsTheTintOfTheSystem) {
  EXPECT_EQ([button alternateImage], aqua);
  {
    const Graphite tint;
    changeColours();
    EXPECT_EQ([button alternateImage], graphite);
    [graphite setName:nil];
    changeColours();
    EXPECT_EQ(bytesAt([button alternateImage], 0, 0), std::vector({0, 0, 0, 127}));
    [button setImage:makeImage({}, {255, 130, 128, 128})];
    changeColours();
    EXPECT_EQ(bytesAt([button alternateImage], 19, 19), std::vector({127, 2, 0, 128}));
  }
  changeColours();
  EXPECT_EQ([button alternateImage], aqua);
  [aqua setName:nil];
  changeColours();
  EXPECT_EQ(bytesAt([button alternateImage], 19, 0), std::vector({0, 0, 127, 128}));
  EXPECT_TRUE([[button imageBaseName] isEqualToString:@"Shape"]);
}

TEST_F(RKShapedButtonTest, MadeInCodeItFollowsUntilItsEnd) {
  RKShapedButton* made = [[RKShapedButton alloc] init];
  changeColours();
  EXPECT_EQ([made imageBaseName], nil);
  [made setAlternateImage:aqua];
  EXPECT_TRUE([[made imageBaseName] isEqualToString:@"Shape"]);
  [made setAlternateImage:graphite];
  changeColours();
  EXPECT_EQ([made alternateImage], aqua);
  [made release];
  changeColours();
}

TEST_F(RKShapedButtonTest, UnfitPicturesTakeEveryClick) {
  NSImage* empty = [[[NSImage alloc] initWithSize:NSMakeSize(20, 20)] autorelease];
  NSImage* custom = [[[NSImage alloc] initWithSize:NSMakeSize(20, 20)] autorelease];
  [custom addRepresentation:[[[NSCustomImageRep alloc] init] autorelease]];
  const struct {
    NSImage* image;
    NSPoint point;
    bool isHit;
    const char* problem;
  } rows[] = {
      {shape, {20, 10.5}, true, ""},
      {shape, {19.9, 20}, false, ""},
      {shape, {29.9, 30}, true, ""},
      {shape, {30, 20}, false, ""},
      {shape, {25, 10}, false, ""},
      {makeImage({.format = NSAlphaFirstBitmapFormat}, {9, 9, 9, 128}), {12, 20}, false, ""},
      {makeImage({.format = NSAlphaNonpremultipliedBitmapFormat}, {9, 9, 9, 128}), {22, 20}, true, ""},
      {makeImage({.samples = 3, .alpha = NO}, {}), {12, 20}, true, ""},
      {makeImage({.planar = YES}, {}), {12, 20}, true, "planar bitmap formats not supported\n"},
      {makeImage({.bits = 16}, {}), {12, 20}, true, "Bits per Pixel/Samples per Pixel != 8: 64/4\n"},
      {empty, {12, 20}, true, ""},
      {custom, {12, 20}, true, ""},
      {nil, {12, 20}, true, ""},
  };
  for (const auto& row : rows) {
    const StandardError log;
    [button setImage:row.image];
    EXPECT_EQ([button hitTest:row.point], row.isHit ? button : nil) << &row - rows;
    EXPECT_TRUE(log.text().ends_with(row.problem)) << log.text();
    EXPECT_EQ(log.text().empty(), *row.problem == 0) << log.text();
  }
  [button setHidden:YES];
  EXPECT_EQ([button hitTest:NSMakePoint(12, 20)], nil);
  for (NSImage* image : {empty, custom}) EXPECT_EQ([image darkenedImageWithColor:[NSColor redColor]], nil);
}

TEST_F(RKShapedButtonTest, DarkenedImagesKeepSizeAndFormat) {
  NSImage* image = makeImage({.format = NSAlphaFirstBitmapFormat}, {9, 8, 7, 6});
  [image setSize:NSMakeSize(2.5, 1.9)];
  NSImage* dark = [image darkenedImageWithColor:[NSColor whiteColor]];
  EXPECT_TRUE(NSEqualSizes([dark size], NSMakeSize(2.5, 1.9)));
  NSBitmapImageRep* bitmap = [[dark representations] objectAtIndex:0];
  EXPECT_EQ([bitmap pixelsWide] * 10 + [bitmap pixelsHigh], 21);
  EXPECT_EQ([bitmap bitmapFormat], NSAlphaFirstBitmapFormat);
  EXPECT_EQ(bytesAt(dark, 1, 0), std::vector({8, 7, 6, 5}));
  [image setSize:NSMakeSize(0.5, 9)];
  EXPECT_EQ([[[image darkenedImageWithColor:[NSColor whiteColor]] representations] count], 0U);
  [image setSize:NSMakeSize(1e6, 1e6)];
  EXPECT_EQ([image darkenedImageWithColor:[NSColor whiteColor]], nil);
  EXPECT_EQ([shape darkenedImageWithColor:[NSColor colorWithPatternImage:shape]], nil);
  EXPECT_EQ([shape darkenedImageWithColor:nil], nil);
}

}  // namespace
}  // namespace corvane
