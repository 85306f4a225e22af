// Takes the sequences by which a terminal is controlled out of a stream of text, piece by piece, so that
// what a tool or a file name says is read and not obeyed. Owner: one per stream. Thread: one at a time.
#pragma once

#include <string>
#include <string_view>

namespace corvane {

class ControlFilter {
 public:
  /// `text` (valid UTF-8) without escape sequences and control characters; line breaks, carriage returns and
  /// tabs stay. A sequence may go on in the next piece, but ends with its line at the latest: one that is
  /// never finished must not swallow what follows. What seemed to be the string of a command is given back
  /// when its line ends first, or after 4096 bytes.
  [[nodiscard]] std::string filter(std::string_view text);

 private:
  enum class State { text, escape, control, string };

  [[nodiscard]] static State afterEscape(unsigned char byte);
  [[nodiscard]] State next(unsigned char byte) const;

  State state_ = State::text;
  std::string held_;  // of a string whose end has not been seen
};

/// A whole text at once, as `ControlFilter` does it.
[[nodiscard]] std::string withoutControls(std::string_view text);

}  // namespace corvane
