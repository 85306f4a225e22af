#include "tools/osascript/Script.h"

#include <gmock/gmock.h>

namespace corvane::osascript {
namespace {

using testing::ElementsAreArray;

struct GoodScript {
  std::string source;
  std::vector<std::pair<std::string, Action>> statements;
};

std::vector<GoodScript> goodScripts() {
  const std::string longName(1'000'000, 'x');
  return {
      {"", {}},
      {" \t\n\r\n\n", {}},
      {"tell application \"Thunderbird\"\nquit\nend tell\n", {{"Thunderbird", Action::quit}}},
      {"tell application \"Thunderbird\"\r\nactivate\r\nend tell", {{"Thunderbird", Action::activate}}},
      {"tell application \"Finder\" to shut down", {{"Finder", Action::shutDown}}},
      {"tell application \"A\" to set working offline to true", {{"A", Action::workOffline}}},
      {"tell application \"A\"\rset working offline to false\rend tell\r", {{"A", Action::workOnline}}},
      {"TELL\tApplication\"A b\"  To   QUIT ", {{"A b", Action::quit}}},
      {"tell application \"a\\\"b\\\\c\" to quit", {{"a\"b\\c", Action::quit}}},
      {"tell application \"A\"\n quit\n\n activate\nEnd  Tell\ntell application \"B\" to quit",
       {{"A", Action::quit}, {"A", Action::activate}, {"B", Action::quit}}},
      {"tell application \"A\"\nend tell", {}},
      {"tell application \"" + longName + "\" to quit", {{longName, Action::quit}}},
  };
}

TEST(ScriptTest, UnderstandsItsSentences) {
  for (const auto& good : goodScripts()) {
    const Script script = parseScript(good.source);
    SCOPED_TRACE(good.source.substr(0, 100));
    EXPECT_FALSE(script.problem);
    std::vector<std::pair<std::string, Action>> statements;
    for (const auto& statement : script.statements) {
      statements.emplace_back(statement.application, statement.action);
    }
    EXPECT_THAT(statements, ElementsAreArray(good.statements));
  }
}

TEST(ScriptTest, TellsWhereAStatementStands) {
  const Script script = parseScript("tell application \"A\"\n\tshut  down \nend tell");
  ASSERT_EQ(script.statements.size(), 1U);
  EXPECT_EQ(script.statements[0].range, (Range{22, 32}));
}

struct BadScript {
  std::string source;
  Range problem;
};

std::vector<BadScript> badScripts() {
  const std::string start = "tell application \"A\"\n";  // 21 bytes
  std::string nested;
  for (int depth = 0; depth < 50'000; ++depth) nested += start;
  std::string junk;
  for (int byte = 1; byte < 256; ++byte) junk += static_cast<char>(byte);
  return {
      {"quit", {0, 4}},
      {"end tell", {0, 3}},
      {"tell application A to quit", {0, 4}},
      {"tell application", {0, 4}},
      {"tëll application \"A\" to quit", {1, 2}},
      {"tell application \"A\" quit", {21, 25}},
      {"tell application \"A\" to", {21, 23}},
      {"tell application \"A\" to set working offline to maybe", {24, 52}},
      {"tell application \"A\" to do shell script \"x\"", {24, 43}},
      {"tell application \"A\" to \"quit\"", {24, 30}},
      {"tell application \"A\" to quit; quit", {28, 29}},
      {"tell application \"A", {17, 19}},
      {"tell application \"A\\\"", {17, 21}},
      {"tell application \"A\\", {17, 20}},
      {"tell application \"A\nB\" to quit", {17, 19}},
      {"tell application \"A\\n\" to quit", {19, 21}},
      {start + "quit", {25, 25}},
      {start + "tell application \"B\"\nquit\nend tell\nend tell", {21, 41}},
      {start + "tell application \"B\" to quit\nend tell", {21, 49}},
      {nested, {21, 41}},
      {junk, {0, 1}},
      {std::string(1'000'000, '"'), {0, 2}},
      {std::string(1'000'000, '\\'), {0, 1}},
      {"tell application \"" + std::string(1'000'000, 'x'), {17, 1'000'018}},
  };
}

TEST(ScriptTest, RefusesTheRestAndSaysWhere) {
  for (const auto& bad : badScripts()) {
    const Script script = parseScript(bad.source);
    SCOPED_TRACE(bad.source.substr(0, 100));
    ASSERT_TRUE(script.problem);
    EXPECT_EQ(script.problem->range.begin, bad.problem.begin);
    EXPECT_EQ(script.problem->range.end, bad.problem.end);
  }
}

}  // namespace
}  // namespace corvane::osascript
