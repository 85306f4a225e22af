#include "process/Utf8Decoder.h"

#include <algorithm>

namespace corvane {
namespace {

using Byte = unsigned char;

// Bytes of the character that `lead` begins; 0 when it begins none.
std::size_t lengthOf(Byte lead) {
  if (lead < 0x80) return 1;
  if (lead < 0xC2) return 0;
  if (lead < 0xE0) return 2;
  if (lead < 0xF0) return 3;
  return lead < 0xF5 ? 4 : 0;
}

// The second byte is narrower after some leads: no overlong forms, no surrogates, nothing above U+10FFFF.
bool continues(Byte lead, std::size_t index, Byte byte) {
  Byte low = 0x80;
  Byte high = 0xBF;
  if (index == 1) {
    if (lead == 0xE0) low = 0xA0;
    if (lead == 0xED) high = 0x9F;
    if (lead == 0xF0) low = 0x90;
    if (lead == 0xF4) high = 0x8F;
  }
  return byte >= low && byte <= high;
}

// Most output is plain ASCII: as much of it as there is, taken in one piece.
std::size_t asciiPrefix(std::string_view text) {
  const auto* end =
      std::find_if(text.begin(), text.end(), [](char byte) { return static_cast<Byte>(byte) >= 0x80; });
  return static_cast<std::size_t>(end - text.begin());
}

// How many bytes at the start of `text` are a character or the beginning of one.
std::size_t wellFormed(std::string_view text) {
  const auto lead = static_cast<Byte>(text[0]);
  const std::size_t length = lengthOf(lead);
  if (length == 0) return 0;
  std::size_t count = 1;
  while (count < length && count < text.size() && continues(lead, count, static_cast<Byte>(text[count])))
    ++count;
  return count;
}

}  // namespace

std::string Utf8Decoder::decode(std::string_view bytes) {
  const std::string joined = pending_ + std::string(bytes);
  std::string_view rest = joined;
  pending_.clear();
  std::string text;
  text.reserve(rest.size());
  bool broken = false;
  while (!rest.empty()) {
    if (const std::size_t plain = asciiPrefix(rest); plain > 0) {
      text += rest.substr(0, plain);
      rest.remove_prefix(plain);
      broken = false;
      continue;
    }
    const std::size_t count = wellFormed(rest);
    const bool whole = count > 0 && count == lengthOf(static_cast<Byte>(rest[0]));
    if (whole) {
      text += rest.substr(0, count);
    } else if (count == rest.size()) {
      pending_ = rest;
    } else if (!broken) {
      text += "\uFFFD";
    }
    broken = !whole;
    rest.remove_prefix(count == 0 ? 1 : count);
  }
  return text;
}

bool isUtf8(std::string_view text) { return Utf8Decoder().decode(text) == text; }

}  // namespace corvane
