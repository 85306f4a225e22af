#include "tools/osascript/Names.h"

namespace corvane::osascript {

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  for (char& letter : lower) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return lower;
}

std::string comparable(std::string_view name) {
  std::string kept = lowerCase(name);
  std::erase_if(kept, [](char letter) { return letter == ' ' || letter == '\t' || letter == '-'; });
  return kept;
}

bool isSameName(std::string_view one, std::string_view other) {
  const std::string wanted = comparable(one);
  return !wanted.empty() && wanted == comparable(other);
}

}  // namespace corvane::osascript
