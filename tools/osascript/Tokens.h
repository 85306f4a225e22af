// The words and strings of one line of a script. Pure; any thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/osascript/Script.h"

namespace corvane::osascript {

struct Token {
  enum class Kind {
    word,          ///< ASCII letters, in lower case
    string,        ///< between quotes, escapes replaced
    unterminated,  ///< a string whose closing quote is missing
    unknown,       ///< anything else
  };
  Kind kind;
  std::string text;
  Range range;
};

/// The tokens of `line`, which begins at `offset` of its script. Nothing follows one that is unterminated or
/// unknown.
[[nodiscard]] std::vector<Token> tokensOf(std::string_view line, std::size_t offset);

}  // namespace corvane::osascript
