#include "schedule/TextEncodings.h"

#include <locale.h>
#include <wchar.h>
#if __has_include(<xlocale.h>)
#include <xlocale.h>
#endif

#include <climits>

#include "process/Utf8Decoder.h"

namespace corvane {
namespace {

constexpr char32_t kFirstBeyond = 0x10000;  // the first character that takes two units

bool isLead(char16_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isTrail(char16_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

// Takes a character off the front of `text`, which is not empty. Nothing when half a pair stands there.
std::optional<char32_t> takeCharacter(std::u16string_view& text) {
  const char16_t unit = text[0];
  const bool isPair = isLead(unit) && text.size() > 1 && isTrail(text[1]);
  if ((isLead(unit) || isTrail(unit)) && !isPair) return std::nullopt;
  const char32_t beyond = isPair ? (char32_t{unit} - 0xD800) << 10 | (char32_t{text[1]} - 0xDC00) : 0;
  text.remove_prefix(isPair ? 2 : 1);
  return isPair ? kFirstBeyond + beyond : char32_t{unit};
}

// The same from the front of valid UTF-8.
char32_t takeCharacter(std::string_view& text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  constexpr char32_t kLeadBits[] = {0x7F, 0x1F, 0x0F, 0x07};
  char32_t character = lead & kLeadBits[length - 1];
  for (std::size_t i = 1; i < length; ++i) character = character << 6 | (text[i] & 0x3F);
  text.remove_prefix(length);
  return character;
}

void append(std::u16string& text, char32_t character) {
  if (character < kFirstBeyond) {
    text += static_cast<char16_t>(character);
    return;
  }
  text += static_cast<char16_t>(0xD800 + ((character - kFirstBeyond) >> 10));
  text += static_cast<char16_t>(0xDC00 + ((character - kFirstBeyond) & 0x3FF));
}

void append(std::string& bytes, char32_t character) {
  const auto add = [&bytes](char32_t byte) { bytes += static_cast<char>(byte); };
  if (character < 0x80) return add(character);
  if (character < 0x800) {
    add(0xC0 | character >> 6);
  } else if (character < kFirstBeyond) {
    add(0xE0 | character >> 12);
    add(0x80 | (character >> 6 & 0x3F));
  } else {
    add(0xF0 | character >> 18);
    add(0x80 | (character >> 12 & 0x3F));
    add(0x80 | (character >> 6 & 0x3F));
  }
  add(0x80 | (character & 0x3F));
}

// Makes the locale of the environment this thread's own while it exists; nobody else has set it.
class UserLocale {
 public:
  UserLocale() : locale_(::newlocale(LC_CTYPE_MASK, "", nullptr)) {
    if (!locale_) locale_ = ::newlocale(LC_CTYPE_MASK, "C", nullptr);  // one that is not installed
    previous_ = ::uselocale(locale_);
  }
  ~UserLocale() {
    ::uselocale(previous_);
    if (locale_) ::freelocale(locale_);
  }
  UserLocale(const UserLocale&) = delete;
  UserLocale& operator=(const UserLocale&) = delete;

 private:
  locale_t locale_;
  locale_t previous_;
};

}  // namespace

std::optional<std::u16string> utf16FromUtf8(std::string_view bytes) {
  if (Utf8Decoder().decode(bytes) != bytes) return std::nullopt;
  std::u16string text;
  while (!bytes.empty()) append(text, takeCharacter(bytes));
  return text;
}

std::optional<std::string> utf8FromUtf16(std::u16string_view text) {
  std::string bytes;
  while (!text.empty()) {
    const auto character = takeCharacter(text);
    if (!character) return std::nullopt;
    append(bytes, *character);
  }
  return bytes;
}

std::optional<std::string> localeBytesFromUtf16(std::u16string_view text) {
  const UserLocale locale;
  std::string bytes;
  mbstate_t state{};
  while (!text.empty()) {
    const auto character = takeCharacter(text);
    char encoded[MB_LEN_MAX];
    const std::size_t length =
        character ? ::wcrtomb(encoded, static_cast<wchar_t>(*character), &state) : std::string::npos;
    if (length > sizeof encoded) return std::nullopt;
    bytes.append(encoded, length);
  }
  return bytes;
}

std::u16string widened(std::string_view bytes) {
  std::u16string units;
  for (const char byte : bytes) units += static_cast<unsigned char>(byte);
  return units;
}

std::string narrowed(std::u16string_view units) {
  std::string bytes;
  for (const char16_t unit : units) bytes += static_cast<char>(unit);
  return bytes;
}

}  // namespace corvane
