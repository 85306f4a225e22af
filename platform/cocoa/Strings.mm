#import "platform/cocoa/Strings.h"

namespace corvane {

NSString* toNSString(std::string_view text) {
  NSString* string = [[[NSString alloc] initWithBytes:text.data()
                                               length:text.size()
                                             encoding:NSUTF8StringEncoding] autorelease];
  if (string != nil) return string;
  return [[[NSString alloc] initWithBytes:text.data() length:text.size()
                                 encoding:NSISOLatin1StringEncoding] autorelease];
}

std::string toUtf8(NSString* text) {
  const char* bytes = [text UTF8String];
  return bytes == nullptr ? std::string() : std::string(bytes);
}

}  // namespace corvane
