#include "process/ControlFilter.h"

#include <algorithm>
#include <utility>

namespace corvane {
namespace {

constexpr unsigned char kEscape = 0x1b;
constexpr unsigned char kBell = 0x07;
constexpr unsigned char kDelete = 0x7f;
constexpr unsigned char kFirstNonAscii = 0x80;
constexpr unsigned char kHighControlLead = 0xc2;
constexpr std::size_t kLongestString = 4096;

bool isLayout(unsigned char byte) { return byte == '\n' || byte == '\r' || byte == '\t'; }
bool isControl(unsigned char byte) { return byte < 0x20 || byte == kDelete; }

// U+0080 to U+009F, each the one-character form of an escape sequence.
bool isHighControl(std::string_view text) {
  if (text.size() < 2 || static_cast<unsigned char>(text[0]) != kHighControlLead) return false;
  const auto second = static_cast<unsigned char>(text[1]);
  return second >= kFirstNonAscii && second < 0xa0;
}

bool needsCare(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte == kHighControlLead || (isControl(byte) && !isLayout(byte));
}

}  // namespace

ControlFilter::State ControlFilter::afterEscape(unsigned char byte) {
  switch (byte) {
    case '[':
      return State::control;
    case ']':  // the commands that are followed by a string
    case 'P':
    case 'X':
    case '^':
    case '_':
      return State::string;
    default:  // a character between blank and slash is followed by another
      return byte >= 0x20 && byte < 0x30 ? State::escape : State::text;
  }
}

ControlFilter::State ControlFilter::next(unsigned char byte) const {
  if (byte == kEscape) return State::escape;
  switch (state_) {
    case State::escape:
      return afterEscape(byte);
    case State::control:
      return byte >= 0x40 ? State::text : State::control;
    case State::string:
      return byte == kBell ? State::text : State::string;
    case State::text:
      break;
  }
  return State::text;
}

std::string ControlFilter::filter(std::string_view text) {
  if (state_ == State::text && std::none_of(text.begin(), text.end(), needsCare)) return std::string(text);
  std::string plain;
  plain.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte == '\n' || byte == '\r' || held_.size() == kLongestString) {
      plain += std::exchange(held_, {});  // no string of a command after all
      state_ = State::text;
    }
    const State before = state_;
    if (!isLayout(byte)) state_ = next(byte);
    if (state_ != State::string) held_.clear();
    if (isHighControl(text.substr(at))) {
      ++at;
    } else if (before == State::string) {
      if (state_ == State::string && !isControl(byte)) held_ += text[at];
    } else if (isLayout(byte) || (!isControl(byte) && before == State::text) || byte >= kFirstNonAscii) {
      plain += text[at];
    }
  }
  return plain;
}

std::string withoutControls(std::string_view text) {
  std::string plain = ControlFilter().filter(std::string(text) + '\n');
  plain.pop_back();
  return plain;
}

}  // namespace corvane
