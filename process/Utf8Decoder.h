// Turns a stream of bytes into valid UTF-8 text, piece by piece.
// Owner: one per stream. Thread: one at a time.
#pragma once

#include <string>
#include <string_view>

namespace corvane {

class Utf8Decoder {
 public:
  /// The text of `bytes`, after what an earlier piece left unfinished. Bytes that are no UTF-8 become one
  /// U+FFFD a run; a character split at the end is kept for the next piece.
  [[nodiscard]] std::string decode(std::string_view bytes);

 private:
  std::string pending_;  // the beginning of a character, at most 3 bytes
};

[[nodiscard]] bool isUtf8(std::string_view text);

}  // namespace corvane
