#import "ui/PLAttachedWindowInternal.h"

using corvane::AfterSetting;
using corvane::native;
using corvane::plain;

@implementation PLAttachedWindow

- (void)pl_setUp {
  [super setBackgroundColor:[NSColor clearColor]];
  [self setMovableByWindowBackground:NO];
  [self setExcludedFromWindowsMenu:YES];
  [self setAlphaValue:1];
  [self setOpaque:NO];
  [self setHasShadow:YES];
  [self useOptimizedDrawing:YES];
  corvane::prepareWindow(self);
  _PLBackgroundColor = [[NSColor colorWithCalibratedWhite:0.1 alpha:0.75] copy];
  borderColor = [[NSColor whiteColor] copy];
}

- (void)pl_follow:(AfterSetting)consequence {
  if (consequence == AfterSetting::redisplay) [self _redisplay];
  if (consequence == AfterSetting::updateBackground) [self _updateBackground];
}

- (id)initWithView:(NSView*)view
    attachedToPoint:(NSPoint)point
           inWindow:(NSWindow*)window
             onSide:(corvane::PLAttachedWindowSide)side
         atDistance:(CGFloat)distance {
  if (!view) return nil;  // AppKit's teardown is not meant for a window that was never initialised
  self = [super initWithContentRect:NSMakeRect(0, 0, NSWidth([view frame]), NSHeight([view frame]))
                          styleMask:NSBorderlessWindowMask
                            backing:NSBackingStoreBuffered
                              defer:NO];
  if (!self) return nil;
  _view = view;
  _window = window;
  _point = point;
  _geometry = corvane::AttachedWindowGeometry(side, distance);
  [self pl_setUp];
  if (!corvane::isResolved(side)) _geometry.setSide([self _bestSideForAutomaticPosition]);
  [self _updateGeometry];
  [self _updateBackground];
  [[self contentView] addSubview:_view];
  [[NSNotificationCenter defaultCenter] addObserver:self
                                           selector:@selector(windowDidResize:)
                                               name:NSWindowDidResizeNotification
                                             object:self];
  return self;
}

- (id)initWithView:(NSView*)view
    attachedToPoint:(NSPoint)point
           inWindow:(NSWindow*)window
         atDistance:(CGFloat)distance {
  return [self initWithView:view
            attachedToPoint:point
                   inWindow:window
                     onSide:corvane::PLSideAutomatic
                 atDistance:distance];
}

- (id)initWithView:(NSView*)view
    attachedToPoint:(NSPoint)point
             onSide:(corvane::PLAttachedWindowSide)side
         atDistance:(CGFloat)distance {
  return [self initWithView:view attachedToPoint:point inWindow:nil onSide:side atDistance:distance];
}

- (id)initWithView:(NSView*)view attachedToPoint:(NSPoint)point atDistance:(CGFloat)distance {
  return [self initWithView:view attachedToPoint:point inWindow:nil atDistance:distance];
}

- (id)initWithView:(NSView*)view attachedToPoint:(NSPoint)point inWindow:(NSWindow*)window {
  return [self initWithView:view attachedToPoint:point inWindow:window atDistance:0];
}

- (id)initWithView:(NSView*)view attachedToPoint:(NSPoint)point onSide:(corvane::PLAttachedWindowSide)side {
  return [self initWithView:view attachedToPoint:point inWindow:nil onSide:side atDistance:0];
}

- (id)initWithView:(NSView*)view attachedToPoint:(NSPoint)point {
  return [self initWithView:view attachedToPoint:point inWindow:nil atDistance:0];
}

- (void)dealloc {
  [[NSNotificationCenter defaultCenter] removeObserver:self];
  [borderColor release];
  [_PLBackgroundColor release];
  [super dealloc];
}

// Properties

- (NSColor*)windowBackgroundColor {
  return [[_PLBackgroundColor retain] autorelease];
}

- (void)setBackgroundColor:(NSColor*)color {
  if (_PLBackgroundColor != color) {
    [_PLBackgroundColor release];
    _PLBackgroundColor = [color ? color : [NSColor clearColor] copy];
  }
  [self _updateBackground];
}

- (void)setBackgroundImage:(NSImage*)image {
  if (image) [self setBackgroundColor:[NSColor colorWithPatternImage:image]];
}

- (NSColor*)borderColor {
  return [[borderColor retain] autorelease];
}

- (void)setBorderColor:(NSColor*)color {
  if (borderColor != color) {
    [borderColor release];
    borderColor = [color ? color : [NSColor clearColor] copy];
  }
  [self _updateBackground];
}

- (CGFloat)borderWidth {
  return _geometry.borderWidth();
}

- (void)setBorderWidth:(CGFloat)width {
  [self pl_follow:_geometry.setBorderWidth(width)];
}

- (CGFloat)viewMargin {
  return _geometry.viewMargin();
}

- (void)setViewMargin:(CGFloat)margin {
  [self pl_follow:_geometry.setViewMargin(margin)];
}

- (CGFloat)arrowBaseWidth {
  return _geometry.arrowBaseWidth();
}

- (void)setArrowBaseWidth:(CGFloat)width {
  [self pl_follow:_geometry.setArrowBaseWidth(width)];
}

- (CGFloat)arrowHeight {
  return _geometry.arrowHeight();
}

- (void)setArrowHeight:(CGFloat)height {
  [self pl_follow:_geometry.setArrowHeight(height)];
}

- (CGFloat)cornerRadius {
  return _geometry.cornerRadius();
}

- (void)setCornerRadius:(CGFloat)radius {
  [self pl_follow:_geometry.setCornerRadius(radius)];
}

- (CGFloat)hasArrow {
  return _geometry.hasArrow();
}

- (void)setHasArrow:(CGFloat)flag {
  [self pl_follow:_geometry.setHasArrow(flag)];
}

- (CGFloat)drawsRoundCornerBesideArrow {
  return _geometry.drawsRoundCornerBesideArrow();
}

- (void)setDrawsRoundCornerBesideArrow:(CGFloat)flag {
  [self pl_follow:_geometry.setDrawsRoundCornerBesideArrow(flag)];
}

// Behaviour of a window

- (BOOL)canBecomeMainWindow {
  return NO;
}

- (BOOL)canBecomeKeyWindow {
  return YES;
}

- (BOOL)isExcludedFromWindowsMenu {
  return YES;
}

- (BOOL)validateMenuItem:(NSMenuItem*)item {
  return _window ? [_window validateMenuItem:item] : [super validateMenuItem:item];
}

- (void)performClose:(id)sender {
  if (_window) {
    [_window performClose:sender];
  } else {
    [super performClose:sender];
  }
}

- (void)windowDidResize:(NSNotification*)notification {
  [self _redisplay];
}

@end

@implementation PLAttachedWindow (Geometry)

- (NSPoint)pl_anchor {
  return _window ? [_window convertBaseToScreen:_point] : _point;
}

- (corvane::PLAttachedWindowSide)_bestSideForAutomaticPosition {
  NSScreen* screen = [_window screen] ? [_window screen] : [NSScreen mainScreen];
  const NSRect area = screen ? [screen visibleFrame] : NSZeroRect;  // nil answers no rectangle here
  const NSRect bounds = _window ? [_window frame] : area;
  return _geometry.bestSideForAutomaticPosition({plain(area), plain(bounds)}, plain([_view frame].size),
                                                plain([self pl_anchor]), corvane::userSpaceScaleFactor());
}

- (CGFloat)_arrowInset {
  return _geometry.arrowInset(corvane::userSpaceScaleFactor());
}

- (void)_updateGeometry {
  const corvane::Size size = _view ? plain([_view frame].size) : corvane::Size{};
  const auto frame = _geometry.updateGeometry(size, plain([self pl_anchor]), corvane::userSpaceScaleFactor());
  [self setFrame:native(frame) display:NO];
  [_view setFrame:native(_geometry.viewFrame())];
}

- (void)_redisplay {
  if (_resizing) return;  // setting the frame below comes back to windowDidResize:
  _resizing = YES;
  {
    const corvane::ScreenUpdatesSuspended suspended;
    [self _updateGeometry];
    [self _updateBackground];
  }
  _resizing = NO;
}

@end
