#import "ui/RKDarkenedImage.h"

#include <algorithm>

#include "ui/Darkening.h"
#import "ui/RKBitmap.h"

namespace {

// Of the source's format what 8-bit samples can have too; with the rest the system would refuse the bitmap.
NSBitmapFormat formatLike(NSBitmapImageRep* source) {
  constexpr NSUInteger kThirtyTwoBitLittleEndian = 1 << 9;  // not every system declares it
  constexpr auto meaningful =
      NSAlphaFirstBitmapFormat | NSAlphaNonpremultipliedBitmapFormat | kThirtyTwoBitLittleEndian;
  return static_cast<NSBitmapFormat>([source bitmapFormat] & meaningful);
}

// Nil when the system refuses the format.
NSBitmapImageRep* emptyBitmapLike(NSBitmapImageRep* source, corvane::PixelSize size) {
  NSBitmapImageRep* bitmap = [NSBitmapImageRep alloc];
  const auto width = static_cast<NSInteger>(size.width);
  const auto height = static_cast<NSInteger>(size.height);
  if ([source respondsToSelector:@selector(bitmapFormat)]) {
    bitmap = [bitmap initWithBitmapDataPlanes:NULL
                                   pixelsWide:width
                                   pixelsHigh:height
                                bitsPerSample:8
                              samplesPerPixel:4
                                     hasAlpha:YES
                                     isPlanar:NO
                               colorSpaceName:NSCalibratedRGBColorSpace
                                 bitmapFormat:formatLike(source)
                                  bytesPerRow:0
                                 bitsPerPixel:0];
  } else {
    bitmap = [bitmap initWithBitmapDataPlanes:NULL
                                   pixelsWide:width
                                   pixelsHigh:height
                                bitsPerSample:8
                              samplesPerPixel:4
                                     hasAlpha:YES
                                     isPlanar:NO
                               colorSpaceName:NSCalibratedRGBColorSpace
                                  bytesPerRow:0
                                 bitsPerPixel:0];
  }
  return [bitmap autorelease];
}

// Nil when the system refuses the format.
NSBitmapImageRep* darkenedBitmap(NSBitmapImageRep* source, corvane::PixelSize size, NSColor* rgb) {
  NSBitmapImageRep* bitmap = emptyBitmapLike(source, size);
  if (!bitmap) return nil;
  const corvane::Bitmap target = corvane::bytesOf(bitmap);
  std::fill(target.bytes.begin(), target.bytes.end(), std::uint8_t{0});  // not every system does that
  corvane::darken(corvane::bytesOf(source), target, size,
                  {[rgb redComponent], [rgb greenComponent], [rgb blueComponent]});
  return bitmap;
}

// Nil for patterns, which raise an exception when they are asked for their red, and for nil.
NSColor* rgbOf(NSColor* color) {
  if ([[color colorSpaceName] isEqualToString:NSPatternColorSpace]) return nil;
  return [color colorUsingColorSpaceName:NSCalibratedRGBColorSpace];
}

NSImage* failed(const char* why) {
  NSLog(@"%s", why);
  return nil;
}

}  // namespace

@implementation NSImage (RKDarkenedImage)

- (NSImage*)darkenedImageWithColor:(NSColor*)color {
  NSBitmapImageRep* source = corvane::firstBitmap(self);
  if (!source) return failed("not a bitmap image rep");
  NSColor* rgb = rgbOf(color);
  if (!rgb) return failed("not a colour to darken an image with");
  const NSSize points = [self size];
  const auto size = corvane::darkenedPixels({points.width, points.height});
  if (!size) return failed("too large an image to darken");
  NSImage* image = [[[NSImage alloc] initWithSize:points] autorelease];
  if (size->width == 0 || size->height == 0) return image;  // no bitmap is that small
  NSBitmapImageRep* bitmap = darkenedBitmap(source, *size, rgb);
  if (!bitmap) return failed("not a bitmap format to darken");
  [image addRepresentation:bitmap];
  return image;
}

@end
