// A push button drawn from its images alone, which answers clicks only where its image is solid. Its pressed
// (alternate) image follows the tint that the user chose for the system's controls: when that image is named
// NAME + "Aqua", the button looks for NAME + "Aqua" or NAME + "Graphite" at each change, and darkens its
// normal image where the application has none. For interface files, as the class of a button without border.
// ShapedHit and ShapedButtonLook decide; this class asks them.
// Owner: the view that it stands in. Thread: main.
#import <AppKit/AppKit.h>

@interface RKShapedButton : NSButton {
  NSString* imageBaseName;
}

/// The name of the pressed image without the tint and what follows it; nil until one had a tint in its name.
- (NSString*)imageBaseName;
/// Keeps a copy.
- (void)setImageBaseName:(NSString*)name;
/// Takes the base name from the name of the present alternate image, if that has a tint.
- (void)updateImageBaseName;

/// Selects or makes the pressed image for the present tint. `notification` may be nil.
- (void)controlTintChanged:(NSNotification*)notification;
/// YES while the user's tint is grey.
- (BOOL)graphiteTint;

@end
