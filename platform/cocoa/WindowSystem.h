// What the window systems under AppKit do differently. One source file per system stands behind it.
// Thread: main.
#pragma once

#import <AppKit/AppKit.h>

#include "ui/Geometry.h"

namespace corvane {

/// While one exists, changes of windows do not reach the screen; they appear together when the last one ends.
class ScreenUpdatesSuspended {
 public:
  ScreenUpdatesSuspended();
  ~ScreenUpdatesSuspended();
  ScreenUpdatesSuspended(const ScreenUpdatesSuspended&) = delete;
  ScreenUpdatesSuspended& operator=(const ScreenUpdatesSuspended&) = delete;
};

/// Pixels per point on the main screen as far as programs have to reckon with them; 1 where they need not.
[[nodiscard]] Length userSpaceScaleFactor();

/// Fills `rect` of the focused view or image with the colours of `record` (made by makeGradientRecord) from
/// its bottom to its top. Takes the record over; draws nothing when it is null.
void drawAxialShading(Length* record, NSRect rect);

/// Sees to it that the mouse drags the window by its background when isMovableByWindowBackground says so, and
/// that it does not take the keyboard when it appears. Called before anything is in its content view.
void prepareWindow(NSWindow* window);

/// Lets `bar` move by itself, as far as the system can also while the main thread waits in an alert or a
/// call.
void animateIndependently(NSProgressIndicator* bar);

/// An empty image that covers at least `window`, to become its background: a new one, or the one that it has
/// got where images are too dear to be thrown away. Autoreleased.
[[nodiscard]] NSImage* emptyBackground(NSWindow* window);

/// On a screen that cannot show windows through each other: fills `body` in the focused image with what is to
/// shine through the window in place of what lies behind it.
void drawBacking(NSWindow* window, NSBezierPath* body);

/// Fills `path`, to which drawing is clipped already and still is afterwards.
void fillClip(NSBezierPath* path);

/// Leaves what lies outside `body`, in window coordinates, to the windows behind: the clicks there, and on a
/// screen that cannot show windows through each other, all but the solid part of `image`.
void cutToShape(NSWindow* window, NSImage* image, NSBezierPath* body);

/// The name of the notification that the tint of the system's controls may have changed.
[[nodiscard]] NSString* controlTintDidChange();

}  // namespace corvane
