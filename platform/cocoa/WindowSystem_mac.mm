#import "platform/cocoa/WindowSystem.h"

#include "ui/WindowGradient.h"

namespace corvane {

ScreenUpdatesSuspended::ScreenUpdatesSuspended() { NSDisableScreenUpdates(); }
ScreenUpdatesSuspended::~ScreenUpdatesSuspended() { NSEnableScreenUpdates(); }

// Systems since 10.7 scale below AppKit, and may have lost the question, or only its declaration.
Length userSpaceScaleFactor() {
  NSScreen* screen = [NSScreen mainScreen];
  if (![screen respondsToSelector:@selector(userSpaceScaleFactor)]) return 1;
  return static_cast<Length>([[screen valueForKey:@"userSpaceScaleFactor"] doubleValue]);
}

void drawAxialShading(Length* record, NSRect rect) {
  if (!record) return;
  const CGFloat domain[] = {0, 1};
  const CGFloat range[] = {0, 1, 0, 1, 0, 1, 0, 1};
  const CGFunctionCallbacks callbacks = {0, evaluateGradient, releaseGradientRecord};
  CGFunctionRef function = CGFunctionCreate(record, 1, domain, 4, range, &callbacks);
  CGColorSpaceRef colours = CGColorSpaceCreateDeviceRGB();
  CGShadingRef shading = CGShadingCreateAxial(colours, CGPointMake(0, NSMinY(rect)),
                                              CGPointMake(0, NSMaxY(rect)), function, false, false);
  CGContextRef context = (CGContextRef)[[NSGraphicsContext currentContext] graphicsPort];
  CGContextSaveGState(context);
  CGContextClipToRect(context, CGRectMake(NSMinX(rect), NSMinY(rect), NSWidth(rect), NSHeight(rect)));
  CGContextDrawShading(context, shading);
  CGContextRestoreGState(context);
  CGShadingRelease(shading);
  CGFunctionRelease(function);
  CGColorSpaceRelease(colours);
}

NSImage* emptyBackground(NSWindow* window) {
  return [[[NSImage alloc] initWithSize:[window frame].size] autorelease];
}

void animateIndependently(NSProgressIndicator* bar) { [bar setUsesThreadedAnimation:YES]; }

void fillClip(NSBezierPath* path) { [path fill]; }

// The system does all this by itself.
void prepareWindow(NSWindow*) {}
void drawBacking(NSWindow*, NSBezierPath*) {}
void cutToShape(NSWindow*, NSImage*, NSBezierPath*) {}

NSString* controlTintDidChange() { return NSControlTintDidChangeNotification; }

}  // namespace corvane
