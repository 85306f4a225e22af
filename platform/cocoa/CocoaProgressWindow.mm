#import "platform/cocoa/CocoaProgressWindow.h"

#import "platform/cocoa/Strings.h"
#import "platform/cocoa/WindowSystem.h"
#import "ui/PLAttachedWindow.h"
#include "ui/StatusLine.h"

namespace corvane {
namespace {

constexpr NSControlTint kGraphite = static_cast<NSControlTint>(6);

// With the room that the cell leaves at its edges.
bool fits(NSCell* cell, NSTextField* field, const std::string& text) {
  [cell setStringValue:toNSString(text)];
  return [cell cellSize].width <= NSWidth([field bounds]);
}

}  // namespace

void CocoaProgressWindow::setHeadline(const std::string& text) {
  [views_.modeTextField setStringValue:toNSString(text)];
  [backupNowWindow_ displayIfNeeded];
}

void CocoaProgressWindow::setStatus(const std::string& text) {
  status_ = text;
  NSTextField* field = views_.backupNowStatus;
  NSCell* cell = [[[field cell] copy] autorelease];  // tries what fits; the field shows only what does
  const auto fitsField = [&](const std::string& candidate) { return fits(cell, field, candidate); };
  [field setStringValue:toNSString(shortenToFit(statusLine(text), fitsField))];
  [field setToolTip:toNSString(wholeStatus(text))];
  [backupNowWindow_ displayIfNeeded];
}

void CocoaProgressWindow::startActivity() {
  [views_.backupProgress setIndeterminate:YES];
  [views_.backupProgress startAnimation:nil];
}

void CocoaProgressWindow::showPercentage() {
  [views_.backupProgress setIndeterminate:NO];
  [views_.backupProgress setDoubleValue:0.0];
  [views_.backupProgress setMaxValue:100.0];
  [views_.backupProgress setMinValue:0.0];
  [views_.backupProgress setDoubleValue:0.0];
}

void CocoaProgressWindow::setPercentage(double percentage) {
  [views_.backupProgress setDoubleValue:percentage];
}

void CocoaProgressWindow::stopActivity() { [views_.backupProgress stopAnimation:nil]; }

void CocoaProgressWindow::setStepMaximum(double maximum) { [views_.overallProgress setMaxValue:maximum]; }

void CocoaProgressWindow::advanceSteps(double delta) { [views_.overallProgress incrementBy:delta]; }

void CocoaProgressWindow::open(ScreenPoint point) {
  backupNowWindow_ = [[PLAttachedWindow alloc] initWithView:views_.backupNowView
                                            attachedToPoint:NSMakePoint(point.x, point.y)
                                                   inWindow:nil
                                                     onSide:PLSideRightRising
                                                 atDistance:0.0];
  [backupNowWindow_ setReleasedWhenClosed:NO];
  [backupNowWindow_ setTitle:@"Corvane"];
  [backupNowWindow_ setAllowsToolTipsWhenApplicationIsInactive:YES];  // as it mostly is
  [backupNowWindow_ setHasArrow:0.0];
  [backupNowWindow_ setMovableByWindowBackground:YES];
  startBars();
  dress();
  [views_.openLogButton setHidden:YES];
  [backupNowWindow_ orderFrontRegardless];
  [backupNowWindow_ displayIfNeeded];
}

void CocoaProgressWindow::startBars() {
  [views_.overallProgress setDisplayedWhenStopped:YES];
  animateIndependently(views_.backupProgress);
  startActivity();
  [views_.backupProgress setHidden:NO];
  animateIndependently(views_.overallProgress);
  [views_.overallProgress setMinValue:0.0];
  [views_.overallProgress setDoubleValue:0.0];
  [views_.overallProgress setHidden:NO];
  [views_.backupNowStatus setHidden:NO];
}

// What GNUstep does not take from the interface file is set here again.
void CocoaProgressWindow::dress() {
  [views_.modeTextField setFont:[NSFont boldSystemFontOfSize:13.0]];
  [backupNowWindow_ setBorderColor:[NSColor colorWithCalibratedWhite:0.93 alpha:0.9]];
  [backupNowWindow_ setBackgroundColor:[backupNowWindow_ gradientWindow]];
  [views_.backupProgress setControlTint:kGraphite];
  [views_.overallProgress setControlTint:kGraphite];
}

void CocoaProgressWindow::showFailure() {
  [views_.backupProgress setHidden:YES];
  [views_.overallProgress setHidden:YES];
  [views_.backupNowStatus setHidden:YES];
  [views_.failureHint setHidden:NO];
  [views_.openLogButton setHidden:NO];
  [views_.openLogButton setKeyEquivalent:@"\r"];  // what its user wants to do next
}

double CocoaProgressWindow::opacity() const {
  return backupNowWindow_ == nil ? 0.0 : static_cast<double>([backupNowWindow_ alphaValue]);
}

void CocoaProgressWindow::setOpacity(double opacity) {
  [backupNowWindow_ setAlphaValue:static_cast<CGFloat>(opacity)];
}

void CocoaProgressWindow::close() {
  [backupNowWindow_ orderOut:nil];
  [backupNowWindow_ setAlphaValue:1.0];
  [backupNowWindow_ release];
  backupNowWindow_ = nil;
}

}  // namespace corvane
