// What RKShapedButton and RKDarkenedImage share. Nobody else includes this. Thread: main.
#import <AppKit/AppKit.h>

#include "ui/Bitmap.h"

namespace corvane {

/// Nil when the first representation of `image`, or the image, is none or is no bitmap.
inline NSBitmapImageRep* firstBitmap(NSImage* image) {
  NSArray* representations = [image representations];
  NSImageRep* first = [representations count] > 0 ? [representations objectAtIndex:0] : nil;
  return [first isKindOfClass:[NSBitmapImageRep class]] ? (NSBitmapImageRep*)first : nil;
}

/// Holds as long as `bitmap` does. A bitmap may read its file, and only then know its numbers, when it is
/// asked for its bytes; so these come
/// first, and whether it has alpha only then.
inline Bitmap bytesOf(NSBitmapImageRep* bitmap) {
  unsigned char* bytes = [bitmap bitmapData];
  const NSInteger size = bytes ? [bitmap bytesPerPlane] : 0;
  return {.bytes = {bytes, static_cast<std::size_t>(size > 0 ? size : 0)},
          .bytesPerRow = static_cast<std::size_t>([bitmap bytesPerRow]),
          .bitsPerPixel = static_cast<std::size_t>([bitmap bitsPerPixel]),
          .samplesPerPixel = static_cast<std::size_t>([bitmap samplesPerPixel]),
          .hasAlpha = [bitmap hasAlpha] != NO,
          .isPlanar = [bitmap isPlanar] != NO};
}

}  // namespace corvane
