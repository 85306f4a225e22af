#include "tools/osascript/Script.h"

#include <gmock/gmock.h>

namespace corvane::osascript {
namespace {

using testing::ElementsAre;
using testing::FieldsAre;

TEST(ScriptTest, UnderstandsItsSentences) {
  const Script script = parseScript(
      " \t\n\r\n"
      "TELL\tApplication\"A b\"  To   QUIT \r\n"
      "tell application \"a\\\"b\\\\c\"\r\tset working offline to true\r\n\nset working offline to false\n"
      "\tshut  down \nEnd  Tell\n"
      "tell application \"B\"\nend tell\n"
      "tell application \"Finder\" to activate");
  EXPECT_FALSE(script.problem);
  // Where each begins and ends, counted from the beginning of the script.
  EXPECT_THAT(script.statements, ElementsAre(FieldsAre("A b", Action::quit, Range{33, 37}),
                                             FieldsAre("a\"b\\c", Action::workOffline, Range{68, 95}),
                                             FieldsAre("a\"b\\c", Action::workOnline, Range{98, 126}),
                                             FieldsAre("a\"b\\c", Action::shutDown, Range{128, 138}),
                                             FieldsAre("Finder", Action::activate, Range{209, 217})));
}

TEST(ScriptTest, RefusesTheRestAndSaysWhere) {
  const std::string start = "tell application \"A\"\n";  // 21 bytes
  const std::pair<std::string, Range> scripts[] = {
      {"quit", {0, 4}},
      {"tell application A to quit", {0, 4}},
      {"tell application", {0, 4}},
      {"tëll application \"A\" to quit", {1, 2}},
      {"tell application \"A\" quit", {21, 25}},
      {"tell application \"A\" to", {21, 23}},
      {"tell application \"A\" to set working offline to maybe", {24, 52}},
      {"tell application \"A\" to \"quit\"", {24, 30}},
      {"tell application \"A\" to quit quit", {24, 33}},
      {"tell application \"A\\\"", {17, 21}},
      {"tell application \"A\\", {17, 20}},
      {"tell application \"" + std::string(1'000'000, 'x'), {17, 1'000'018}},
      {"tell application \"A\nB\" to quit", {17, 19}},
      {"tell application \"A\\n\" to quit", {19, 21}},
      {start + "quit", {25, 25}},
      {start + "tell application \"B\"\nquit\nend tell\nend tell", {21, 41}}};
  for (const auto& [source, range] : scripts) {
    const Script script = parseScript(source);
    ASSERT_TRUE(script.problem) << source.substr(0, 100);
    EXPECT_EQ(script.problem->range, range) << source.substr(0, 100);
  }
}

}  // namespace
}  // namespace corvane::osascript
