// A borderless window that holds one view and stands beside a point of the screen, in a rounded body with
// room for an arrow that aims at the point. What it measures and draws is worked out by
// AttachedWindowGeometry and backgroundPath; this class applies it.
//
// Owner: whoever made it. It keeps its view as a subview, and only borrows the parent window, which must
// outlive it. Thread: main. Lengths are points.
#import <AppKit/AppKit.h>

#include "ui/AttachedWindowGeometry.h"

@interface PLAttachedWindow : NSWindow {
  NSColor* borderColor;
  NSColor* _PLBackgroundColor;
  NSView* _view;
  NSWindow* _window;
  NSPoint _point;
  corvane::AttachedWindowGeometry _geometry;
  BOOL _resizing;
}

/// `point` is in the base coordinates of `window`, or in those of the screen when that is nil. An automatic
/// side is resolved once, here. The distance lies between the point and the tip of the arrow.
/// Answers nil when the view is nil; the receiver is then never freed.
- (id)initWithView:(NSView*)view
    attachedToPoint:(NSPoint)point
           inWindow:(NSWindow*)window
             onSide:(corvane::PLAttachedWindowSide)side
         atDistance:(CGFloat)distance;

/// The same with the automatic side, no parent window, or the distance 0 where they are not given.
- (id)initWithView:(NSView*)view
    attachedToPoint:(NSPoint)point
           inWindow:(NSWindow*)window
         atDistance:(CGFloat)distance;
- (id)initWithView:(NSView*)view
    attachedToPoint:(NSPoint)point
             onSide:(corvane::PLAttachedWindowSide)side
         atDistance:(CGFloat)distance;
- (id)initWithView:(NSView*)view attachedToPoint:(NSPoint)point atDistance:(CGFloat)distance;
- (id)initWithView:(NSView*)view attachedToPoint:(NSPoint)point inWindow:(NSWindow*)window;
- (id)initWithView:(NSView*)view attachedToPoint:(NSPoint)point onSide:(corvane::PLAttachedWindowSide)side;
- (id)initWithView:(NSView*)view attachedToPoint:(NSPoint)point;

/// The fill of the body; the window's own background is the drawing of the body and its border.
/// Nil stands for the clear colour, here as for the border.
- (NSColor*)windowBackgroundColor;
- (void)setBackgroundColor:(NSColor*)color;
/// Fills the body with the image as a pattern; nil changes nothing.
- (void)setBackgroundImage:(NSImage*)image;
- (NSColor*)borderColor;
- (void)setBorderColor:(NSColor*)color;

/// The limits of the measures, and what the flags' numbers mean, stand at AttachedWindowGeometry.
- (CGFloat)borderWidth;
- (void)setBorderWidth:(CGFloat)width;
- (CGFloat)viewMargin;
- (void)setViewMargin:(CGFloat)margin;
- (CGFloat)arrowBaseWidth;
- (void)setArrowBaseWidth:(CGFloat)width;
- (CGFloat)arrowHeight;
- (void)setArrowHeight:(CGFloat)height;
- (CGFloat)cornerRadius;
- (void)setCornerRadius:(CGFloat)radius;
- (CGFloat)hasArrow;
- (void)setHasArrow:(CGFloat)flag;
- (CGFloat)drawsRoundCornerBesideArrow;
- (void)setDrawsRoundCornerBesideArrow:(CGFloat)flag;

@end

@interface PLAttachedWindow (Gradient)

/// A grey gradient, lighter at the top, over an accent line of one point: a fill for the body, made for the
/// window's present size. Autoreleased.
- (NSColor*)gradientWindow;

@end
