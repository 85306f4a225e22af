// Darkening of an image by a colour, as for the pressed picture of a button. Darkening.h works out the bytes;
// this category of the platform's image class hands them over. Thread: main.
#import <AppKit/AppKit.h>

@interface NSImage (RKDarkenedImage)

/// An image of the same size, made from the first representation with one pixel per point. Autoreleased.
/// Nil, with a line in the log, when that is no bitmap, the colour has no red, green and blue, or the system
/// cannot make such a bitmap.
- (NSImage*)darkenedImageWithColor:(NSColor*)color;

@end
