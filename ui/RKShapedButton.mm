#import "ui/RKShapedButton.h"

#import "platform/cocoa/Strings.h"
#import "platform/cocoa/WindowSystem.h"
#import "ui/RKBitmap.h"
#import "ui/RKDarkenedImage.h"
#include "ui/ShapedButtonLook.h"
#include "ui/ShapedHit.h"

@interface RKShapedButton (Private)
- (void)rk_observeTint;
- (corvane::ButtonLook)rk_look;
- (NSImage*)rk_imageForLook:(const corvane::ButtonLook&)look;
@end

@implementation RKShapedButton

- (id)init {
  self = [super init];
  [self rk_observeTint];
  return self;
}

- (void)awakeFromNib {
  if ([NSButton instancesRespondToSelector:_cmd]) [super awakeFromNib];
  [self rk_observeTint];
  [self updateImageBaseName];
  [self controlTintChanged:nil];
}

- (void)dealloc {
  [[NSNotificationCenter defaultCenter] removeObserver:self];
  [imageBaseName release];
  [super dealloc];
}

// A button from an interface file may have gone through init as well: what was asked for before is taken
// back, so that it is told of each change once.
- (void)rk_observeTint {
  NSNotificationCenter* center = [NSNotificationCenter defaultCenter];
  NSString* change = corvane::controlTintDidChange();
  [center removeObserver:self name:change object:nil];
  [center addObserver:self selector:@selector(controlTintChanged:) name:change object:nil];
}

- (NSString*)imageBaseName {
  return [[imageBaseName retain] autorelease];
}

- (void)setImageBaseName:(NSString*)name {
  if (imageBaseName == name) return;
  [imageBaseName release];
  imageBaseName = [name copy];
}

- (void)setAlternateImage:(NSImage*)image {
  [super setAlternateImage:image];
  [self updateImageBaseName];
}

- (void)updateImageBaseName {
  const auto name = corvane::untintedImageName(corvane::toUtf8([[self alternateImage] name]));
  if (name) [self setImageBaseName:corvane::toNSString(*name)];
}

- (void)controlTintChanged:(NSNotification*)notification {
  if (!imageBaseName) return;
  const auto name = corvane::tintedImageName(corvane::toUtf8(imageBaseName), [self graphiteTint] != NO);
  NSImage* image = [NSImage imageNamed:corvane::toNSString(name)];
  if (!image) {
    NSColor* tint = [NSColor colorForControlTint:NSDefaultControlTint];
    image = [[self image] darkenedImageWithColor:[tint colorWithAlphaComponent:0.5]];
  }
  [super setAlternateImage:image];  // the base name stays what it is
}

// Only colours of the system's catalogue can be asked for their names.
- (BOOL)graphiteTint {
  NSColor* tint = [NSColor colorForControlTint:NSDefaultControlTint];
  if (![[tint colorSpaceName] isEqualToString:NSNamedColorSpace]) return NO;
  return [[tint colorNameComponent] isEqualToString:@"graphiteControlTintColor"];
}

// Drawing

- (BOOL)isOpaque {
  return NO;
}

- (corvane::ButtonLook)rk_look {
  NSButtonCell* cell = [self cell];
  return corvane::shapedButtonLook({.isEnabled = [self isEnabled] != NO,
                                    .isHighlighted = [cell isHighlighted] != NO,
                                    .showsState = [cell showsStateBy] != NSNoCellMask,
                                    .isOn = [cell state] == NSOnState});
}

// Without an alternate image the normal one stands in for it; nil when there is neither, or when the image
// cannot be darkened. It is darkened at each drawing, since the system's colour may be another one by then.
- (NSImage*)rk_imageForLook:(const corvane::ButtonLook&)look {
  NSImage* image = look.isAlternate && [self alternateImage] ? [self alternateImage] : [self image];
  if (!look.isDarkened) return image;
  return [image darkenedImageWithColor:[[NSColor controlHighlightColor] colorWithAlphaComponent:0.5]];
}

// An image is placed by its lower left corner, which a flipped view counts down to.
- (void)drawRect:(NSRect)rect {
  const auto look = [self rk_look];
  NSImage* image = [self rk_imageForLook:look];
  if (!image) return;
  const CGFloat bottom = [self isFlipped] ? [image size].height : 0;
  [image dissolveToPoint:NSMakePoint(0, bottom) fraction:look.fraction];
}

// Clicks

// In place of the platform's own, which leaves hidden views out: their clicks go to what lies behind them.
- (NSView*)hitTest:(NSPoint)point {
  if ([self isHidden]) return nil;
  const NSPoint own = [self convertPoint:point fromView:[self superview]];
  if (!NSPointInRect(own, [self bounds])) return nil;
  NSBitmapImageRep* bitmap = corvane::firstBitmap([self image]);
  if (!bitmap) return self;
  const auto answer = corvane::shapedHit(corvane::bytesOf(bitmap), {own.x, own.y});
  if (!answer.problem.empty()) NSLog(@"%s", answer.problem.c_str());
  return answer.isHit ? self : nil;
}

@end
