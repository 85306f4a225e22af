#include <algorithm>
#include <string>

#include "platform/plist/Guards.h"
#include "platform/plist/Texts.h"
#include "process/Utf8Decoder.h"

namespace corvane {
namespace {

// Brackets anywhere, also in texts and comments: should GNUstep's reader ever see one where the guard sees
// none, its stack still suffices.
constexpr std::ptrdiff_t kMaxBrackets = 2000;

// Kinds of tokens besides the punctuation, which stands for itself.
constexpr char kEnd = 0;
constexpr char kText = 's';
constexpr char kData = 'd';
constexpr char kBad = '?';

// What is expected next, for each open bracket, besides '=', ';' and ','.
constexpr char kRoot = 'r';
constexpr char kKey = 'k';
constexpr char kValue = 'v';
constexpr char kItem = 'i';

bool isWordCharacter(char character) {
  constexpr std::string_view others = "_$/:.-";
  const bool letter = (character | 32) >= 'a' && (character | 32) <= 'z';
  return letter || (character >= '0' && character <= '9') || others.find(character) != std::string_view::npos;
}

bool isPrintable(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char character) {
    return isSpace(character) || static_cast<unsigned char>(character) >= 0x20;
  });
}

// `text` stands between '<' and '>': hexadecimal digits, or one of GNUstep's typed values.
Fault faultInAngles(std::string_view text) {
  if (text.find_first_of("{}()\"<") != std::string_view::npos) return faults::kMalformed;
  if (!text.starts_with('*')) return {};
  const auto value = text.substr(std::min<std::size_t>(text.size(), 2));
  if (text.starts_with("*I"))
    return isInteger(value) && value.find_first_of("xX") == std::string_view::npos ? Fault()
                                                                                   : faults::kNumber;
  if (text.starts_with("*R")) return isReal(value) ? Fault() : faults::kNumber;
  if (text.starts_with("*B")) return value == "Y" || value == "N" ? Fault() : faults::kMalformed;
  return text.starts_with("*D") ? Fault() : faults::kMalformed;
}

char following(char expected) {
  switch (expected) {
    case kKey:
      return '=';
    case '=':
      return kValue;
    case kValue:
      return ';';
    case ';':
      return kKey;
    case kItem:
      return ',';
    case ',':
      return kItem;
    default:
      return kEnd;
  }
}

// The bracket that may stand in place of what is expected; kEnd for none.
char closing(char expected) {
  if (expected == kKey) return '}';
  return expected == kItem || expected == ',' ? ')' : kEnd;
}

class OpenStepGuard {
 public:
  explicit OpenStepGuard(std::string_view text) : rest_(text) {}

  Fault fault() {
    if (!isPrintable(rest_) || !isUtf8(rest_)) return faults::kEncoding;
    const auto isOpening = [](char character) { return character == '{' || character == '('; };
    if (std::count_if(rest_.begin(), rest_.end(), isOpening) > kMaxBrackets) return faults::kSize;
    while (accept(token())) continue;
    return fault_;
  }

 private:
  bool fail(Fault fault) {
    if (fault_.empty()) fault_ = fault;
    return false;
  }

  char bad(Fault fault) {
    fail(fault);
    return kBad;
  }

  // Skips up to and with `end`; kBad when it is not there.
  char skipPast(std::string_view end, std::size_t from, char kind) {
    const auto stop = rest_.find(end, from);
    if (stop == std::string_view::npos) return bad(faults::kUnfinished);
    rest_.remove_prefix(stop + end.size());
    return kind;
  }

  void skipLine() { rest_.remove_prefix(std::min(rest_.find('\n'), rest_.size())); }

  // The kind of the next token, which is skipped.
  char token() {
    for (;;) {
      while (!rest_.empty() && isSpace(rest_.front())) rest_.remove_prefix(1);
      if (rest_.starts_with("//")) {
        skipLine();
      } else if (!rest_.starts_with("/*")) {
        break;
      } else if (skipPast("*/", 2, kText) == kBad) {
        return kBad;
      }
    }
    if (rest_.empty()) return kEnd;
    const char first = rest_.front();
    if (first == '"') return quoted();
    if (first == '<') return angles();
    if (isWordCharacter(first)) return word();
    rest_.remove_prefix(1);
    return first;
  }

  char quoted() {
    std::size_t at = 1;
    while (at < rest_.size() && rest_[at] != '"') at += rest_[at] == '\\' ? 2 : 1;
    if (at >= rest_.size()) return bad(faults::kUnfinished);
    rest_.remove_prefix(at + 1);
    return kText;
  }

  char angles() {
    const auto fault = faultInAngles(rest_.substr(1, std::min(rest_.find('>'), rest_.size()) - 1));
    return fault.empty() ? skipPast(">", 1, kData) : bad(fault);
  }

  char word() {
    std::size_t count = 1;
    while (count < rest_.size() && isWordCharacter(rest_[count])) ++count;
    rest_.remove_prefix(count);
    return kText;
  }

  // False at the end, and at a fault.
  bool accept(char token) {
    if (token == kEnd) return open_ == std::string(1, kEnd) ? false : fail(faults::kUnfinished);
    const char expected = open_.back();
    if (token == closing(expected)) {
      open_.pop_back();
      return true;
    }
    open_.back() = following(expected);
    if (expected == kRoot || expected == kValue || expected == kItem) return value(token);
    if (expected == kKey && token == kText) return count();
    return token == expected || fail(faults::kMalformed);
  }

  bool value(char token) {
    if (token == kText || token == kData) return count();
    if (token != '{' && token != '(') return fail(faults::kMalformed);
    open_ += token == '{' ? kKey : kItem;
    return open_.size() <= kMaxPropertyListDepth + 1 ? count() : fail(faults::kDepth);
  }

  bool count() { return ++values_ <= kMaxPropertyListValues || fail(faults::kSize); }

  std::string_view rest_;
  Fault fault_;
  std::string open_ = std::string(1, kRoot);  // what each open bracket expects next; the file is the first
  std::size_t values_ = 0;                    // and keys
};

}  // namespace

Fault faultInOpenStep(std::string_view text) { return OpenStepGuard(text).fault(); }

}  // namespace corvane
