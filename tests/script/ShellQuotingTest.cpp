#include "script/ShellQuoting.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(ShellQuoting, EscapesWhatTheShellWouldInterpret) {
  const std::pair<const char*, const char*> cases[] = {
      {"My Mail (old)", R"(My\ Mail\ \(old\))"},
      {" ()&|<>;$`*?'", R"(\ \(\)\&\|\<\>\;\$\`\*\?\')"},
      {"\\\"!#~[]{}=\t\n", "\\\"!#~[]{}=\t\n"},
      {R"(a\ b)", R"(a\\ b)"},
      {"Pöstfach ä", R"(Pöstfach\ ä)"},
      {"/tmp/.QVB_Backup", "/tmp/.QVB_Backup"},
      {"", ""},
  };
  for (const auto& [plain, escaped] : cases) EXPECT_EQ(escapeStringForTerminal(plain), escaped);
}

TEST(ShellQuoting, StripsTheEscapesAgain) {
  const std::pair<const char*, const char*> cases[] = {
      {R"(My\ Mail\ \(old\))", "My Mail (old)"},
      {R"(\ \(\)\&\|\<\>\;\$\`\*\?\')", " ()&|<>;$`*?'"},
      {R"(\n\"\\x)", R"(\n\"\\x)"},
      {R"(a\\ b)", R"(a\ b)"},  // the second backslash goes with the blank
      {"lone\\", "lone\\"},
      {"/tmp/.QVB_Backup", "/tmp/.QVB_Backup"},
      {"", ""},
  };
  for (const auto& [escaped, plain] : cases) EXPECT_EQ(stripEscapes(escaped), plain);
}

}  // namespace
}  // namespace corvane
