#import "platform/cocoa/WindowSystem.h"

#import <GNUstepGUI/GSDisplayServer.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/shape.h>
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "ui/WindowGradient.h"

/// A content view that moves its window with the mouse: GNUstep only stores the flag. Of a shaped window it
/// takes the clicks inside the shape alone.
@interface PLDraggingView : NSView {
  NSPoint grip;
  NSBezierPath* body;
}
- (void)setBody:(NSBezierPath*)path;
@end

@implementation PLDraggingView

- (void)dealloc {
  [body release];
  [super dealloc];
}

- (void)setBody:(NSBezierPath*)path {
  [path retain];
  [body release];
  body = path;
}

// The first click may already drag, as it does where the system itself does the dragging.
- (BOOL)acceptsFirstMouse:(NSEvent*)event {
  return YES;
}

// What the user works with keeps its clicks; by labels, pictures, bars and empty space the window is dragged.
- (NSView*)hitTest:(NSPoint)point {
  if (body && ![body containsPoint:point]) return nil;
  NSView* hit = [super hitTest:point];
  if (!hit || ![[self window] isMovableByWindowBackground]) return hit;
  const BOOL isLabel = [hit isKindOfClass:[NSTextField class]] && ![(NSTextField*)hit isSelectable];
  if (isLabel || [hit isKindOfClass:[NSImageView class]]) return self;
  return [hit isKindOfClass:[NSControl class]] || [hit isKindOfClass:[NSText class]] ? hit : self;
}

- (void)mouseDown:(NSEvent*)event {
  grip = [event locationInWindow];
}

- (void)mouseDragged:(NSEvent*)event {
  if (![[self window] isMovableByWindowBackground]) return;
  const NSPoint mouse = [NSEvent mouseLocation];
  [[self window] setFrameOrigin:NSMakePoint(mouse.x - grip.x, mouse.y - grip.y)];
}

// Of movements that come close together only some are reported.
- (void)mouseUp:(NSEvent*)event {
  [self mouseDragged:event];
}

@end

namespace corvane {
namespace {

NSColor* colourAt(Length position, Length* record) {
  Length components[4];
  evaluateGradient(record, &position, components);
  return [NSColor colorWithDeviceRed:components[0]
                               green:components[1]
                                blue:components[2]
                               alpha:components[3]];
}

// Null when it is no X server that shows the window.
Display* displayOf(NSWindow* window) {
  GSDisplayServer* server = GSServerForWindow(window);
  if (![server isKindOfClass:NSClassFromString(@"XGServer")]) return nullptr;
  return static_cast<Display*>([server serverDevice]);
}

// A compositor announces itself as the owner of a selection that is named after the screen.
bool hasCompositor(NSWindow* window) {
  Display* display = displayOf(window);
  if (!display) return true;
  const std::string name = "_NET_WM_CM_S" + std::to_string(DefaultScreen(display));
  return XGetSelectionOwner(display, XInternAtom(display, name.c_str(), False)) != None;
}

// In X's coordinates of a window of that height: rows count from above.
std::vector<XPoint> corners(NSBezierPath* body, CGFloat height) {
  NSBezierPath* flat = [body bezierPathByFlatteningPath];
  std::vector<XPoint> all;
  for (NSInteger i = 0; i < [flat elementCount]; ++i) {
    NSPoint points[3];
    if ([flat elementAtIndex:i associatedPoints:points] == NSClosePathBezierPathElement) break;
    all.push_back({static_cast<short>(std::lround(points[0].x)),
                   static_cast<short>(std::lround(height - points[0].y))});
  }
  return all;
}

// A compositor makes the rest of the window invisible, but leaves the clicks to it.
void takeClicksOnlyIn(NSBezierPath* body, NSWindow* window) {
  Display* display = displayOf(window);
  if (!display) return;
  auto points = corners(body, NSHeight([window frame]));
  const Region region = XPolygonRegion(points.data(), static_cast<int>(points.size()), WindingRule);
  XShapeCombineRegion(display, reinterpret_cast<Window>([window windowRef]), ShapeInput, 0, 0, region,
                      ShapeSet);
  XDestroyRegion(region);
}

// Window managers give a new window the keyboard unless its user did nothing for it.
void declineKeyboard(NSWindow* window) {
  Display* display = displayOf(window);
  if (!display) return;
  const unsigned long never = 0;
  XChangeProperty(display, reinterpret_cast<Window>([window windowRef]),
                  XInternAtom(display, "_NET_WM_USER_TIME", False), XA_CARDINAL, 32, PropModeReplace,
                  reinterpret_cast<const unsigned char*>(&never), 1);
}

}  // namespace

ScreenUpdatesSuspended::ScreenUpdatesSuspended() = default;
ScreenUpdatesSuspended::~ScreenUpdatesSuspended() = default;

Length userSpaceScaleFactor() {
  NSScreen* screen = [NSScreen mainScreen];
  return screen ? [screen userSpaceScaleFactor] : 1;  // a message to nil answers no number here
}

void drawAxialShading(Length* record, NSRect rect) {
  if (!record) return;
  NSGradient* gradient = [[NSGradient alloc] initWithStartingColor:colourAt(0, record)
                                                       endingColor:colourAt(1, record)];
  [gradient drawInRect:rect angle:90];
  [gradient release];
  releaseGradientRecord(record);
}

void prepareWindow(NSWindow* window) {
  NSView* content = [[PLDraggingView alloc] initWithFrame:[[window contentView] frame]];
  [window setContentView:content];
  [content release];
  declineKeyboard(window);
}

// A thread would only ask the main one to draw, which does not listen while an alert is up; a timer goes on.
void animateIndependently(NSProgressIndicator* bar) { [bar setUsesThreadedAnimation:NO]; }

void drawBacking(NSWindow* window, NSBezierPath* body) {
  if (hasCompositor(window)) return;
  [[NSColor windowBackgroundColor] set];
  [body fill];
}

// Filling with a pattern forgets the clip.
void fillClip(NSBezierPath* path) {
  [path fill];
  [path addClip];
}

// Every image that is drawn into costs some kilobytes here that are never given back.
NSImage* emptyBackground(NSWindow* window) {
  NSColor* colour = [window backgroundColor];
  const BOOL drawn = [[colour colorSpaceName] isEqualToString:NSPatternColorSpace];
  NSImage* image = drawn ? [colour patternImage] : nil;
  const NSSize needed = [window frame].size;
  const NSSize present = image ? [image size] : NSZeroSize;
  if (present.width < needed.width || present.height < needed.height) {
    const NSSize both =
        NSMakeSize(std::max(present.width, needed.width), std::max(present.height, needed.height));
    return [[[NSImage alloc] initWithSize:both] autorelease];
  }
  [image lockFocus];
  NSRectFillUsingOperation(NSMakeRect(0, 0, present.width, present.height), NSCompositeClear);
  [image unlockFocus];
  return image;
}

void cutToShape(NSWindow* window, NSImage* image, NSBezierPath* body) {
  takeClicksOnlyIn(body, window);
  if ([[window contentView] isKindOfClass:[PLDraggingView class]]) [[window contentView] setBody:body];
  NSImage* shape = nil;
  if (!hasCompositor(window)) {
    const NSSize size = [window frame].size;
    [image lockFocus];
    NSBitmapImageRep* pixels =
        [[NSBitmapImageRep alloc] initWithFocusedViewRect:NSMakeRect(0, 0, size.width, size.height)];
    [image unlockFocus];
    shape = [[[NSImage alloc] initWithSize:size] autorelease];
    [shape addRepresentation:pixels];
    [pixels release];
  }
  [GSServerForWindow(window) restrictWindow:[window windowNumber] toImage:shape];
}

// There is no notification of its own for the tint, which is one of the system's colours.
NSString* controlTintDidChange() { return NSSystemColorsDidChangeNotification; }

}  // namespace corvane
