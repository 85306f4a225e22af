#import <Foundation/Foundation.h>

#include <cmath>
#include <utility>

#include "platform/cocoa/FoundationPropertyList.h"
#include "platform/cocoa/Guard.h"
#include "platform/cocoa/Strings.h"
#include "platform/plist/Texts.h"

namespace corvane {
namespace {

// Each of these is false when there is something in the object that no property list can hold.
bool convert(id object, PropertyListValue& value);

// The frameworks keep one object each for the two truth values.
void convertNumber(NSNumber* number, PropertyListValue& value) {
  const bool yes = number == [NSNumber numberWithBool:YES];
  const char type = *[number objCType];
  const bool tooLarge = [number longLongValue]<0 && [number doubleValue]> 0;
  if (yes || number == [NSNumber numberWithBool:NO]) {
    value.value = yes;
  } else if (type == 'd' || type == 'f' || tooLarge) {
    value.value = [number doubleValue];
  } else {
    value.value = static_cast<std::int64_t>([number longLongValue]);
  }
}

bool convertArray(NSArray* objects, PropertyListValue& value) {
  auto& values = value.value.emplace<PropertyListValue::Array>();
  NSEnumerator* enumerator = [objects objectEnumerator];
  while (id object = [enumerator nextObject])
    if (!convert(object, values.emplace_back())) return false;
  return true;
}

bool convertDictionary(NSDictionary* objects, PropertyListValue& value) {
  auto& values = value.value.emplace<PropertyListDictionary>();
  NSEnumerator* keys = [objects keyEnumerator];
  while (id key = [keys nextObject]) {
    if (![key isKindOfClass:[NSString class]]) return false;
    if (!convert([objects objectForKey:key], values[toUtf8(key)])) return false;
  }
  return true;
}

bool convert(id object, PropertyListValue& value) {
  if ([object isKindOfClass:[NSArray class]]) return convertArray(object, value);
  if ([object isKindOfClass:[NSDictionary class]]) return convertDictionary(object, value);
  if ([object isKindOfClass:[NSNumber class]]) {
    convertNumber(object, value);
  } else if ([object isKindOfClass:[NSString class]]) {
    value.value = toUtf8(object);
  }
  return object != nil;
}

// One overload for each kind of value; nil where there is no form for it in XML.
struct ObjectFrom {
  id operator()(const PropertyListValue::Other&) const { return nil; }
  id operator()(bool flag) const { return [NSNumber numberWithBool:flag ? YES : NO]; }
  id operator()(std::int64_t number) const { return [NSNumber numberWithLongLong:number]; }
  id operator()(double number) const {
    return std::isfinite(number) ? [NSNumber numberWithDouble:number] : nil;
  }
  id operator()(const std::string& text) const { return hasFormInXml(text) ? toNSString(text) : nil; }
  id operator()(const PropertyListValue::Array& values) const {
    NSMutableArray* array = [NSMutableArray array];
    for (const auto& value : values) {
      id object = std::visit(*this, value.value);
      if (!object) return nil;
      [array addObject:object];
    }
    return array;
  }
  id operator()(const PropertyListDictionary& values) const {
    NSMutableDictionary* dictionary = [NSMutableDictionary dictionary];
    for (const auto& [key, value] : values) {
      id object = std::visit(*this, value.value);
      if (!object || !hasFormInXml(key)) return nil;
      [dictionary setObject:object forKey:toNSString(key)];
    }
    return dictionary;
  }
};

id parsed(std::string_view bytes) {
  NSData* data = [NSData dataWithBytes:bytes.data() length:bytes.size()];
  return [NSPropertyListSerialization propertyListWithData:data
                                                   options:NSPropertyListImmutable
                                                    format:NULL
                                                     error:NULL];
}

std::optional<std::string> serialised(id root) {
  if (!root) return std::nullopt;
  NSData* data = [NSPropertyListSerialization dataWithPropertyList:root
                                                            format:NSPropertyListXMLFormat_v1_0
                                                           options:0
                                                             error:NULL];
  if (!data) return std::nullopt;
  return std::string(static_cast<const char*>([data bytes]), [data length]);
}

}  // namespace

std::optional<PropertyListValue> readWithFoundation(std::string_view bytes) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  std::optional<PropertyListValue> value(std::in_place);
  bool converted = false;
  const bool raised = guarded([&] { converted = convert(parsed(bytes), *value); }) != nil;
  if (raised || !converted) value.reset();
  [pool drain];
  return value;
}

std::optional<std::string> xmlFromFoundation(const PropertyListDictionary& dictionary) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  std::optional<std::string> xml;
  if (guarded([&] { xml = serialised(ObjectFrom()(dictionary)); })) xml.reset();
  [pool drain];
  return xml;
}

}  // namespace corvane
