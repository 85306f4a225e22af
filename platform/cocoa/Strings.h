// The two doors through which texts pass between the C++ rooms and the frameworks. Thread: any.
#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

namespace corvane {

/// An autoreleased string. Bytes that are no UTF-8 are read as Latin-1, so that nothing is ever lost.
NSString* toNSString(std::string_view text);

/// UTF-8, zero bytes included; empty for nil. A text with half a surrogate pair, which is no
/// Unicode, loses at least that.
std::string toUtf8(NSString* text);

}  // namespace corvane
