#import <AppKit/AppKit.h>
#import <GNUstepGUI/GSTheme.h>

#import "platform/cocoa/Theme.h"
#include "ui/ControlShapes.h"

// Bars and push buttons drawn smooth and flat; everything else as GNUstep draws it.
@interface QSTheme : GSTheme
@end

namespace {

NSColor* grey(CGFloat white) { return [NSColor colorWithCalibratedWhite:white alpha:1.0]; }

NSBezierPath* rounded(NSRect rect, CGFloat radius) {
  return [NSBezierPath bezierPathWithRoundedRect:NSInsetRect(rect, 0.5, 0.5) xRadius:radius yRadius:radius];
}

void fillWithGradient(NSBezierPath* path, CGFloat bottom, CGFloat top) {
  NSGradient* gradient = [[NSGradient alloc] initWithStartingColor:grey(bottom) endingColor:grey(top)];
  [gradient drawInBezierPath:path angle:90.0];
  [gradient release];
}

void strokeThin(NSBezierPath* path, CGFloat white) {
  [grey(white) set];
  [path setLineWidth:1.0];
  [path stroke];
}

corvane::Rect rectFrom(NSRect rect) { return {NSMinX(rect), NSMinY(rect), NSWidth(rect), NSHeight(rect)}; }

NSPoint pointFrom(corvane::Point point) { return NSMakePoint(point.x, point.y); }

void drawStripes(NSRect bar, int step) {
  [grey(0.55) set];
  for (const auto& stripe : corvane::stripes(rectFrom(bar), step)) {
    NSBezierPath* path = [NSBezierPath bezierPath];
    [path moveToPoint:pointFrom(stripe.corners[0])];
    [path lineToPoint:pointFrom(stripe.corners[1])];
    [path lineToPoint:pointFrom(stripe.corners[2])];
    [path lineToPoint:pointFrom(stripe.corners[3])];
    [path fill];
  }
}

// Rounded itself, since a gradient does not heed the clip.
void drawFilledPart(NSRect bar, double fraction) {
  const corvane::Rect part = corvane::filledPart(rectFrom(bar), fraction);
  if (part.width <= 1.0) return;
  fillWithGradient(rounded(NSMakeRect(part.x, part.y, part.width, part.height), 4.0), 0.45, 0.6);
}

}  // namespace

@implementation QSTheme

- (void)drawProgressIndicator:(NSProgressIndicator*)progress
                   withBounds:(NSRect)bounds
                     withClip:(NSRect)clip
                      atCount:(int)count
                     forValue:(double)fraction {
  (void)clip;
  NSBezierPath* track = rounded(bounds, 4.0);
  fillWithGradient(track, 0.86, 0.78);
  [NSGraphicsContext saveGraphicsState];
  [track addClip];
  if ([progress isIndeterminate]) {
    drawStripes(bounds, count);
  } else {
    drawFilledPart(bounds, fraction);
  }
  [NSGraphicsContext restoreGraphicsState];
  strokeThin(track, 0.6);
}

- (void)drawButton:(NSRect)frame
                in:(NSCell*)cell
              view:(NSView*)view
             style:(int)style
             state:(GSThemeControlState)state {
  if (style != NSRoundedBezelStyle) {
    [super drawButton:frame in:cell view:view style:style state:state];
    return;
  }
  const bool pressed = state == GSThemeHighlightedState || state == GSThemeHighlightedFirstResponderState;
  NSBezierPath* body = rounded(NSInsetRect(frame, 1.0, 2.0), 5.0);
  // The view of a button is flipped: its gradient begins at the top.
  fillWithGradient(body, pressed ? 0.8 : 1.0, pressed ? 0.7 : 0.9);
  strokeThin(body, 0.6);
}

@end

namespace corvane {

void installTheme() {
  GSTheme* theme = [[QSTheme alloc] initWithBundle:[NSBundle mainBundle]];
  [GSTheme setTheme:theme];
  [theme release];
}

}  // namespace corvane
