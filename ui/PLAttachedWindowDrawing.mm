#include "ui/AttachedWindowOutline.h"
#import "ui/PLAttachedWindowInternal.h"
#include "ui/WindowGradient.h"

using corvane::native;
using corvane::plain;

namespace {

void append(const corvane::PathElement& element, NSBezierPath* path) {
  using Kind = corvane::PathElement::Kind;
  switch (element.kind) {
    case Kind::move:
      [path moveToPoint:native(element.point)];
      break;
    case Kind::line:
      [path lineToPoint:native(element.point)];
      break;
    case Kind::arc:
      [path appendBezierPathWithArcFromPoint:native(element.point)
                                     toPoint:native(element.toward)
                                      radius:element.radius];
      break;
    case Kind::close:
      [path closePath];
      break;
  }
}

void apply(const corvane::Outline& outline, NSBezierPath* path) {
  for (const auto& element : outline) append(element, path);
}

// The alpha of the gradient's colours lets a little of what lies behind shine through.
corvane::GradientColour gradientGrey(CGFloat brightness) {
  CGFloat red, green, blue, alpha;
  NSColor* grey = [NSColor colorWithDeviceHue:0 saturation:0 brightness:brightness alpha:0.9];
  [grey getRed:&red green:&green blue:&blue alpha:&alpha];
  return {red, green, blue, alpha};
}

}  // namespace

@implementation PLAttachedWindow (Gradient)

- (NSColor*)gradientWindow {
  if (NSIsEmptyRect([self frame])) return [NSColor clearColor];
  NSImage* image = [[[NSImage alloc] initWithSize:[self frame].size] autorelease];
  const NSSize size = [image size];
  NSRect accent, shaded;
  NSDivideRect(NSMakeRect(0, 0, size.width, size.height), &accent, &shaded, 1, NSMinYEdge);
  [image lockFocus];
  [[NSColor alternateSelectedControlColor] set];
  NSRectFill(accent);
  corvane::drawAxialShading(corvane::makeGradientRecord(gradientGrey(0.93), gradientGrey(0.98)), shaded);
  [image unlockFocus];
  return [NSColor colorWithPatternImage:image];
}

@end

@implementation PLAttachedWindow (Background)

- (void)_updateBackground {
  // Every drawing leaves some pictures of the whole window behind: they go at once.
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  {
    const corvane::ScreenUpdatesSuspended suspended;
    // Not our own method of that name, which sets the fill.
    [super setBackgroundColor:[self _backgroundColorPatternImage]];
    if ([self isVisible]) {
      [self display];
      [self invalidateShadow];
    }
  }
  [pool release];
}

- (NSColor*)_backgroundColorPatternImage {
  if (NSIsEmptyRect([self frame])) return [NSColor clearColor];  // no image can be that small
  NSImage* image = corvane::emptyBackground(self);
  NSBezierPath* path = [self _backgroundPath];
  [image lockFocus];
  corvane::drawBacking(self, path);
  [NSGraphicsContext saveGraphicsState];
  [path addClip];
  [_PLBackgroundColor set];
  corvane::fillClip(path);
  [self pl_stroke:path];
  [NSGraphicsContext restoreGraphicsState];
  [image unlockFocus];
  corvane::cutToShape(self, image, path);
  return [NSColor colorWithPatternImage:image];
}

- (void)pl_stroke:(NSBezierPath*)path {
  const CGFloat width = _geometry.strokeWidth(corvane::userSpaceScaleFactor());
  if (width <= 0) return;
  [path setLineWidth:width];
  [borderColor set];
  [path stroke];
}

- (NSBezierPath*)_backgroundPath {
  NSBezierPath* path = [NSBezierPath bezierPath];
  [path setLineJoinStyle:NSRoundLineJoinStyle];
  apply(corvane::backgroundPath(_geometry, corvane::userSpaceScaleFactor()), path);
  return path;
}

- (void)_appendArrowToPath:(NSBezierPath*)path {
  corvane::Outline arrow;
  corvane::appendArrowToPath(arrow, plain([path currentPoint]), _geometry, corvane::userSpaceScaleFactor());
  apply(arrow, path);
}

@end
