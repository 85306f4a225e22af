// What the two source files of PLAttachedWindow share. Nobody else includes this. Thread: main.
#import "platform/cocoa/WindowSystem.h"
#import "ui/PLAttachedWindow.h"

namespace corvane {

static_assert(std::is_same_v<Length, CGFloat>);

inline Point plain(NSPoint point) { return {point.x, point.y}; }
inline Size plain(NSSize size) { return {size.width, size.height}; }
inline Rect plain(NSRect rect) { return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height}; }
inline NSPoint native(const Point& point) { return NSMakePoint(point.x, point.y); }
inline NSRect native(const Rect& rect) { return NSMakeRect(rect.x, rect.y, rect.width, rect.height); }

}  // namespace corvane

@interface PLAttachedWindow (Geometry)
/// The point that the arrow aims at, on the screen.
- (NSPoint)pl_anchor;
- (corvane::PLAttachedWindowSide)_bestSideForAutomaticPosition;
- (CGFloat)_arrowInset;
/// Places the window and its view.
- (void)_updateGeometry;
/// Places and draws the window again. Does nothing while it is already at it.
- (void)_redisplay;
@end

@interface PLAttachedWindow (Background)
/// Draws the body again, as the window's own background.
- (void)_updateBackground;
- (NSColor*)_backgroundColorPatternImage;
/// Draws the border: the inner half of a line along `path`.
- (void)pl_stroke:(NSBezierPath*)path;
/// The outline in window coordinates. Autoreleased.
- (NSBezierPath*)_backgroundPath;
/// Continues `path` by the arrow from its current point, if the window has one.
- (void)_appendArrowToPath:(NSBezierPath*)path;
@end
