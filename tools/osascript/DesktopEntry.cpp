#include "tools/osascript/DesktopEntry.h"

namespace corvane::osascript {
namespace {

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  const auto begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

// What is no escape stays as it is.
std::string unescaped(std::string_view value) {
  constexpr std::string_view kEscapes = "sntr\\";
  constexpr std::string_view kMeanings = " \n\t\r\\";
  std::string text;
  for (std::size_t at = 0; at < value.size(); ++at) {
    const bool isPair = value[at] == '\\' && at + 1 < value.size();
    const auto which = isPair ? kEscapes.find(value[at + 1]) : std::string_view::npos;
    const bool isEscape = which != std::string_view::npos;
    text += isEscape ? kMeanings[which] : value[at];
    at += isEscape ? 1 : 0;
  }
  return text;
}

class ExecReader {
 public:
  explicit ExecReader(std::string_view exec) : exec_(exec) {}
  std::optional<std::vector<std::string>> read();

 private:
  bool readNext();
  bool readQuoted(char quote);
  bool readPlace();
  void beginArgument() {
    if (!argument_) argument_.emplace();
  }
  void add(char letter) {
    beginArgument();
    argument_->push_back(letter);
  }
  void finishArgument() {
    if (argument_) arguments_.push_back(std::move(*argument_));
    argument_.reset();
  }

  std::string_view exec_;
  std::size_t at_ = 0;
  std::optional<std::string> argument_;  // the one being read; a place alone makes none
  std::vector<std::string> arguments_;
};

std::optional<std::vector<std::string>> ExecReader::read() {
  while (at_ < exec_.size()) {
    if (!readNext()) return std::nullopt;
  }
  finishArgument();
  if (arguments_.empty() || arguments_.front().empty()) return std::nullopt;
  return std::move(arguments_);
}

bool ExecReader::readNext() {
  const char letter = exec_[at_++];
  switch (letter) {
    case ' ':
    case '\t':
    case '\n':
      finishArgument();
      return true;
    case '"':
    case '\'':
      return readQuoted(letter);
    case '%':
      return readPlace();
    case '\\':
      if (at_ == exec_.size()) return false;
      add(exec_[at_++]);
      return true;
    default:
      add(letter);
      return true;
  }
}

bool ExecReader::readQuoted(char quote) {
  constexpr std::string_view kEscapable = "\"`$\\";
  beginArgument();
  while (at_ < exec_.size() && exec_[at_] != quote) {
    const bool isEscape = quote == '"' && exec_[at_] == '\\' && at_ + 1 < exec_.size() &&
                          kEscapable.find(exec_[at_ + 1]) != std::string_view::npos;
    if (isEscape) ++at_;
    if (!isEscape && exec_[at_] == '%') {
      ++at_;
      if (!readPlace()) return false;
    } else {
      add(exec_[at_++]);
    }
  }
  return at_++ < exec_.size();
}

// What follows a percent sign.
bool ExecReader::readPlace() {
  constexpr std::string_view kPlaces = "fFuUdDnNickvm";
  if (at_ == exec_.size()) return false;
  const char kind = exec_[at_++];
  if (kind == '%') add('%');
  return kind == '%' || kPlaces.find(kind) != std::string_view::npos;
}

}  // namespace

DesktopEntry parseDesktopEntry(std::string_view text) {
  DesktopEntry entry;
  bool isInGroup = false;
  while (!text.empty()) {
    const auto line = trimmed(text.substr(0, text.find('\n')));
    text.remove_prefix(std::min(text.find('\n'), text.size() - 1) + 1);
    if (line.starts_with('[')) isInGroup = line == "[Desktop Entry]";
    const auto equals = line.find('=');
    if (!isInGroup || line.starts_with('#') || equals == std::string_view::npos) continue;
    entry.emplace(trimmed(line.substr(0, equals)), unescaped(trimmed(line.substr(equals + 1))));
  }
  return entry;
}

std::string valueOf(const DesktopEntry& entry, std::string_view key) {
  const auto found = entry.find(key);
  return found == entry.end() ? std::string() : found->second;
}

std::optional<std::vector<std::string>> parseExec(std::string_view exec) { return ExecReader(exec).read(); }

}  // namespace corvane::osascript
