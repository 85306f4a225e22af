#include "tools/osascript/Script.h"

#include <algorithm>
#include <initializer_list>
#include <span>

#include "tools/osascript/Tokens.h"

namespace corvane::osascript {
namespace {

using Words = std::initializer_list<std::string_view>;

bool startsWith(std::span<const Token> tokens, Words words) {
  const auto isWord = [](const Token& token, std::string_view word) {
    return token.kind == Token::Kind::word && token.text == word;
  };
  return tokens.size() >= words.size() &&
         std::equal(words.begin(), words.end(), tokens.begin(),
                    [&](std::string_view word, const Token& token) { return isWord(token, word); });
}

bool isExactly(std::span<const Token> tokens, Words words) {
  return tokens.size() == words.size() && startsWith(tokens, words);
}

std::optional<Action> actionOf(std::span<const Token> tokens) {
  if (isExactly(tokens, {"quit"})) return Action::quit;
  if (isExactly(tokens, {"activate"})) return Action::activate;
  if (isExactly(tokens, {"set", "working", "offline", "to", "true"})) return Action::workOffline;
  if (isExactly(tokens, {"set", "working", "offline", "to", "false"})) return Action::workOnline;
  if (isExactly(tokens, {"shut", "down"})) return Action::shutDown;
  return std::nullopt;
}

class Parser {
 public:
  Script parse(std::string_view source);

 private:
  void readLine(std::span<const Token> line);
  void readTell(std::span<const Token> line);
  void readStatement(const std::string& application, std::span<const Token> statement);
  void fail(Range range, std::string message) { script_.problem = {std::move(message), range}; }

  Script script_;
  std::optional<std::string> block_;  // the application of the block that is open
};

Script Parser::parse(std::string_view source) {
  for (std::size_t begin = 0; begin < source.size() && !script_.problem;) {
    const auto end = std::min(source.find_first_of("\r\n", begin), source.size());
    readLine(tokensOf(source.substr(begin, end - begin), begin));
    begin = end + 1;
  }
  if (block_ && !script_.problem) {
    fail({source.size(), source.size()}, "Expected “end tell” but found end of script.");
  }
  return std::move(script_);
}

void Parser::readLine(std::span<const Token> line) {
  if (line.empty()) return;
  const Token& last = line.back();
  if (last.kind == Token::Kind::unterminated) return fail(last.range, "Expected “\"” but found end of line.");
  if (last.kind == Token::Kind::unknown)
    return fail(last.range, "Expected end of line but found unknown token.");
  if (block_ && isExactly(line, {"end", "tell"})) {
    block_.reset();
  } else if (block_) {
    readStatement(*block_, line);
  } else {
    readTell(line);
  }
}

void Parser::readTell(std::span<const Token> line) {
  constexpr std::size_t kHead = 3;
  if (!startsWith(line, {"tell", "application"}) || line.size() < kHead ||
      line[2].kind != Token::Kind::string) {
    return fail(line.front().range, "Expected “tell application \"NAME\"”.");
  }
  const auto rest = line.subspan(kHead);
  if (rest.empty()) {
    block_ = line[2].text;
  } else if (startsWith(rest, {"to"})) {
    readStatement(line[2].text, rest.size() > 1 ? rest.subspan(1) : rest);
  } else {
    fail(rest.front().range, "Expected end of line but found something else.");
  }
}

void Parser::readStatement(const std::string& application, std::span<const Token> statement) {
  const Range range{statement.front().range.begin, statement.back().range.end};
  const auto action = actionOf(statement);
  if (!action) return fail(range, "Expected a command that an application understands.");
  script_.statements.push_back({application, *action, range});
}

}  // namespace

Script parseScript(std::string_view source) { return Parser().parse(source); }

}  // namespace corvane::osascript
