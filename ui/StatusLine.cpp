#include "ui/StatusLine.h"

namespace corvane {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::size_t kMostCharacters = 1000;

bool startsCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }

std::size_t characters(std::string_view text) {
  std::size_t count = 0;
  for (const char byte : text) count += startsCharacter(byte) ? 1 : 0;
  return count;
}

// Where character number `index` of `text` begins; the end of the text when it has no more.
std::size_t offsetOf(std::string_view text, std::size_t index) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (startsCharacter(text[at]) && index-- == 0) return at;
  }
  return text.size();
}

// The first and the last of `text`, `kept` characters together.
std::string ends(std::string_view text, std::size_t kept) {
  const std::size_t head = offsetOf(text, kept - kept / 2);
  const std::size_t tail = offsetOf(text, characters(text) - kept / 2);
  return std::string(text.substr(0, head)) + "\u2026" + std::string(text.substr(tail));
}

std::string capped(std::string_view text) {
  return characters(text) > kMostCharacters ? ends(text, kMostCharacters - 1) : std::string(text);
}

std::string_view withoutBlanks(std::string_view text) {
  const auto last = text.find_last_not_of(kBlanks);
  if (last == std::string_view::npos) return {};
  text = text.substr(0, last + 1);
  text.remove_prefix(text.find_first_not_of(kBlanks));
  return text;
}

}  // namespace

std::string statusLine(std::string_view status) {
  status = withoutBlanks(status);
  status.remove_prefix(status.find_last_of("\r\n") + 1);  // npos + 1 is 0
  return capped(withoutBlanks(status));
}

std::string wholeStatus(std::string_view status) { return capped(withoutBlanks(status)); }

std::string shortenToFit(const std::string& line, const std::function<bool(const std::string&)>& fits) {
  if (fits(line)) return line;
  std::size_t kept = 0;  // the most characters known to fit
  std::size_t tooMany = characters(line);
  while (tooMany - kept > 1) {
    const std::size_t middle = kept + (tooMany - kept) / 2;
    (fits(ends(line, middle)) ? kept : tooMany) = middle;
  }
  return ends(line, kept);
}

}  // namespace corvane
