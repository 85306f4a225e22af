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
  NSData* bytes = [text dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
  if (bytes == nil) return "";
  return {static_cast<const char*>([bytes bytes]), [bytes length]};
}

}  // namespace corvane
