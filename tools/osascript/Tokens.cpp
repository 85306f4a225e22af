#include "tools/osascript/Tokens.h"

#include "tools/osascript/Names.h"

namespace corvane::osascript {
namespace {

constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

// The string that begins with the quote at `begin`.
Token stringAt(std::string_view line, std::size_t begin) {
  std::string text;
  std::size_t at = begin + 1;
  for (; at < line.size() && line[at] != '"'; ++at) {
    if (line[at] == '\\') {
      ++at;
      if (at == line.size()) break;
      if (line[at] != '"' && line[at] != '\\') return {Token::Kind::unknown, {}, {at - 1, at + 1}};
    }
    text += line[at];
  }
  if (at == line.size()) return {Token::Kind::unterminated, {}, {begin, at}};
  return {Token::Kind::string, std::move(text), {begin, at + 1}};
}

Token tokenAt(std::string_view line, std::size_t begin) {
  if (line[begin] == '"') return stringAt(line, begin);
  const auto end = std::min(line.find_first_not_of(kLetters, begin), line.size());
  if (end == begin) return {Token::Kind::unknown, {}, {begin, begin + 1}};
  return {Token::Kind::word, lowerCase(line.substr(begin, end - begin)), {begin, end}};
}

}  // namespace

std::vector<Token> tokensOf(std::string_view line, std::size_t offset) {
  constexpr std::string_view kBlanks = " \t";
  std::vector<Token> tokens;
  std::size_t at = line.find_first_not_of(kBlanks);
  while (at != std::string_view::npos) {
    Token token = tokenAt(line, at);
    at = line.find_first_not_of(kBlanks, token.range.end);
    token.range.begin += offset;
    token.range.end += offset;
    tokens.push_back(std::move(token));
    const auto kind = tokens.back().kind;
    if (kind == Token::Kind::unterminated || kind == Token::Kind::unknown) break;
  }
  return tokens;
}

}  // namespace corvane::osascript
