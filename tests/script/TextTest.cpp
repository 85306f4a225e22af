#include "script/Text.h"

#include <gtest/gtest.h>

#include "script/ShellQuoting.h"

namespace corvane {
namespace {

TEST(Text, FillReplacesKnownNamesOnly) {
  EXPECT_EQ(fill("{{name}}{name}awk '{print $9}' {base}{name", {{"base", "/a {name}"}, {"name", "N"}}),
            "{N}Nawk '{print $9}' /a {name}{name");
}

TEST(ShellQuoting, EscapesWhatTheShellWouldInterpretAndStripsItAgain) {
  const std::pair<const char*, const char*> rows[] = {
      {"My Mail (old)", R"(My\ Mail\ \(old\))"},
      {" ()&|<>;$`*?'", R"(\ \(\)\&\|\<\>\;\$\`\*\?\')"},
      {"/tmp/.QVB_Backup\"!#~[]{}=\t\nä", "/tmp/.QVB_Backup\"!#~[]{}=\t\nä"},
      {R"(a\ b)", R"(a\\ b)"},  // taken away again, the second backslash goes with the blank
      {R"(\n\"\\x\)", R"(\n\"\\x\)"},
  };
  for (const auto& [plain, escaped] : rows) {
    EXPECT_EQ(escapeStringForTerminal(plain), escaped);
    EXPECT_EQ(stripEscapes(escaped), plain);
  }
}

}  // namespace
}  // namespace corvane
