#include "platform/plist/Texts.h"

#include <charconv>
#include <cstdint>
#include <system_error>

#include "process/Utf8Decoder.h"

namespace corvane {
namespace {

bool isDigit(char character) { return character >= '0' && character <= '9'; }

std::size_t skipDigits(std::string_view& text) {
  std::size_t count = 0;
  while (count < text.size() && isDigit(text[count])) ++count;
  text.remove_prefix(count);
  return count;
}

bool skipSign(std::string_view& text) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  return negative;
}

}  // namespace

bool hasFormInXml(std::string_view text) {
  for (const char character : text)
    if (static_cast<unsigned char>(character) < 0x20 && !isSpace(character)) return false;
  return isUtf8(text);
}

bool isInteger(std::string_view text) {
  const bool negative = skipSign(text);
  const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
  if (hexadecimal) text.remove_prefix(2);
  if (!hexadecimal && text.size() > 1 && text[0] == '0') return false;
  std::uint64_t size = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, size, hexadecimal ? 16 : 10);
  if (error != std::errc() || stop != end) return false;
  return !negative || size <= std::uint64_t{1} << 63;
}

bool isReal(std::string_view text) {
  skipSign(text);
  std::size_t digits = skipDigits(text);
  if (text.starts_with('.')) {
    text.remove_prefix(1);
    digits += skipDigits(text);
  }
  if (digits == 0) return false;
  if (text.empty()) return true;
  if (text[0] != 'e' && text[0] != 'E') return false;
  text.remove_prefix(1);
  skipSign(text);
  const std::size_t exponent = skipDigits(text);
  return exponent > 0 && exponent <= 3 && text.empty();
}

bool isSpace(char character) {
  return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace corvane
