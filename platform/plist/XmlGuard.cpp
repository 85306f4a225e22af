#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/plist/Guards.h"
#include "platform/plist/Texts.h"
#include "process/Utf8Decoder.h"
#include "script/Text.h"

namespace corvane {
namespace {

constexpr std::string_view kDocument = "";
constexpr std::array<std::string_view, 11> kElements = {"plist", "dict", "array", "key",  "string", "integer",
                                                        "real",  "true", "false", "date", "data"};
// libplist compares a key with every other one of the same hash, which is easily made the same.
constexpr std::size_t kMaxKeys = 1'000;
// It moves the rest of a text once for every entity in it: about 0.1 seconds.
constexpr std::uint64_t kMaxMovedBytes = 1'000'000'000;

enum class Expects { Key, Value, Nothing };

struct Open {
  std::string_view name;
  Expects expects;
  std::size_t keys = 0;
};

bool isContainer(std::string_view name) { return name == "plist" || name == "dict" || name == "array"; }
bool isText(std::string_view name) { return name == "key" || name == "string"; }

// The readers disagree about unbalanced quotes: what one takes for the end of a tag, another does not.
bool hasBalancedQuotes(std::string_view tag) { return std::count(tag.begin(), tag.end(), '"') % 2 == 0; }

// A declaration that names another encoding, over bytes that happen to be UTF-8 too, is not to be guessed at.
bool isForUtf8(std::string_view declaration) {
  std::string lower(declaration);
  for (char& letter : lower)
    letter = letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
  return !contains(lower, "encoding") || contains(lower, "utf-8") || contains(lower, "ascii");
}

// `name` stands between '&' and ';'.
bool isEntity(std::string_view name) {
  constexpr std::array<std::string_view, 5> known = {"amp", "lt", "gt", "quot", "apos"};
  if (!name.starts_with('#')) return std::find(known.begin(), known.end(), name) != known.end();
  const bool hexadecimal = name.starts_with("#x");
  name.remove_prefix(hexadecimal ? 2 : 1);
  constexpr std::string_view digits = "0123456789abcdefABCDEF";
  return !name.empty() && name.size() <= 6 &&
         name.find_first_not_of(digits.substr(0, hexadecimal ? 22 : 10)) == std::string_view::npos;
}

class XmlGuard {
 public:
  explicit XmlGuard(std::string_view text) : rest_(text) { open_.push_back({kDocument, Expects::Value, 0}); }

  Fault fault() {
    if (rest_.find('\0') != std::string_view::npos || !isUtf8(rest_)) return faults::kEncoding;
    while (step()) continue;
    const bool whole = open_.size() == 1 && open_.back().expects == Expects::Nothing;
    return fault_.empty() && !whole ? faults::kUnfinished : fault_;
  }

 private:
  bool fail(Fault fault) {
    fault_ = fault;
    return false;
  }

  void skipSpace() {
    while (!rest_.empty() && isSpace(rest_.front())) rest_.remove_prefix(1);
  }

  // False at the end, and at a fault.
  bool step() {
    skipSpace();
    if (rest_.empty()) return false;
    if (rest_.starts_with("<!--")) return skipPast("-->", 4);
    if (rest_.starts_with("<?")) return declaration("?>");
    if (rest_.starts_with("<!DOCTYPE")) return declaration(">");
    return rest_.starts_with('<') ? tag() : fail(faults::kMalformed);
  }

  bool skipPast(std::string_view end, std::size_t from) {
    const auto stop = rest_.find(end, from);
    if (stop == std::string_view::npos) return fail(faults::kUnfinished);
    rest_.remove_prefix(stop + end.size());
    return true;
  }

  bool declaration(std::string_view end) {
    const auto text = rest_.substr(1, rest_.find(end) - 1);
    if (open_.size() > 1 || open_.back().expects == Expects::Nothing) return fail(faults::kMalformed);
    if (text.find_first_of("[<") != std::string_view::npos || !hasBalancedQuotes(text) || !isForUtf8(text))
      return fail(faults::kDeclaration);
    return skipPast(end, 0);
  }

  bool tag() {
    const auto end = rest_.find('>');
    if (end == std::string_view::npos) return fail(faults::kUnfinished);
    auto inside = rest_.substr(1, end - 1);
    rest_.remove_prefix(end + 1);
    if (inside.starts_with('/')) return close(inside.substr(1));
    const bool empty = inside.ends_with('/');
    if (empty) inside.remove_suffix(1);
    const auto name = inside.substr(0, inside.find_first_of(" \t\r\n"));
    const auto attributes = trimmed(inside.substr(name.size()));
    if (name == "plist" ? !hasBalancedQuotes(attributes) || attributes.find('<') != std::string_view::npos
                        : !attributes.empty())
      return fail(faults::kMalformed);
    return enter(name) && content(name, empty);
  }

  // A key, a value, or the "plist" around them begins.
  bool enter(std::string_view name) {
    Open& parent = open_.back();
    if (std::find(kElements.begin(), kElements.end(), name) == kElements.end())
      return fail(faults::kMalformed);
    if (parent.expects == Expects::Nothing || (parent.expects == Expects::Key) != (name == "key"))
      return fail(faults::kMalformed);
    if (name == "plist" && parent.name != kDocument) return fail(faults::kMalformed);
    if (parent.name == "dict") {
      parent.expects = parent.expects == Expects::Key ? Expects::Value : Expects::Key;
    } else if (parent.name != "array") {
      parent.expects = Expects::Nothing;
    }
    if (name == "key" && ++parent.keys > kMaxKeys) return fail(faults::kSize);
    return ++values_ <= kMaxPropertyListValues || fail(faults::kSize);
  }

  bool content(std::string_view name, bool empty) {
    // libplist takes an empty-element key for a value.
    if (empty && name == "key") return fail(faults::kMalformed);
    if (!isContainer(name)) return empty ? leaf(name, "") : texts(name);
    if (name != "plist" && ++depth_ > kMaxPropertyListDepth) return fail(faults::kDepth);
    open_.push_back({name, name == "dict" ? Expects::Key : Expects::Value, 0});
    return empty ? close(name) : true;
  }

  bool close(std::string_view name) {
    while (!name.empty() && isSpace(name.back())) name.remove_suffix(1);
    const Open& closed = open_.back();
    if (closed.name != name || name == kDocument) return fail(faults::kMalformed);
    if (name != "array" && closed.expects == Expects::Value) return fail(faults::kMalformed);
    if (name != "plist") --depth_;
    open_.pop_back();
    return true;
  }

  // What stands between the tags of an element without elements in it, and its closing tag.
  bool texts(std::string_view name) {
    for (;;) {
      const auto text = rest_.substr(0, rest_.find('<'));
      rest_.remove_prefix(text.size());
      if (rest_.empty()) return fail(faults::kUnfinished);
      const bool marked = isText(name) && rest_.starts_with("<![CDATA[");
      if (!(marked && text.empty()) && !leaf(name, text)) return false;
      if (!marked) break;
      if (!skipPast("]]>", 9)) return false;
    }
    const auto end = rest_.find('>');
    if (end == std::string_view::npos) return fail(faults::kUnfinished);
    const auto closing = rest_.substr(0, end);
    rest_.remove_prefix(end + 1);
    if (!closing.starts_with("</") || !closing.substr(2).starts_with(name)) return fail(faults::kMalformed);
    return trimmed(closing.substr(2 + name.size())).empty() || fail(faults::kMalformed);
  }

  bool leaf(std::string_view name, std::string_view text) {
    if (isText(name)) return entities(text);
    if (name == "integer") return isInteger(trimmed(text)) || fail(faults::kNumber);
    if (name == "real") return isReal(trimmed(text)) || fail(faults::kNumber);
    return (name != "true" && name != "false") || trimmed(text).empty() || fail(faults::kMalformed);
  }

  bool entities(std::string_view text) {
    const auto length = text.size();
    for (auto at = text.find('&'); at != std::string_view::npos; at = text.find('&', at + 1)) {
      const auto end = text.find(';', at);
      if (end == std::string_view::npos || !isEntity(text.substr(at + 1, end - at - 1)))
        return fail(faults::kMalformed);
      moved_ += length;
      if (moved_ > kMaxMovedBytes) return fail(faults::kSize);
    }
    return true;
  }

  std::string_view rest_;
  Fault fault_;
  std::vector<Open> open_;  // never empty: the document is the first
  std::size_t depth_ = 0;
  std::size_t values_ = 0;
  std::uint64_t moved_ = 0;
};

}  // namespace

Fault faultInXml(std::string_view text) { return XmlGuard(text).fault(); }

}  // namespace corvane
