#include "script/FileNaming.h"

#include <gmock/gmock.h>
#include <array>

#include "process/QSComputerName.h"
#include "process/RunTool.h"
#include "process/ScriptInterpreter.h"
#include "script/ShellQuoting.h"
#include "script/Text.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/ScriptFixtures.h"

namespace corvane {
namespace {

// Names reach the shell as they are: it is the user's own shell, and this is how dates get in too.
TEST(FileNaming, DatesQuotesAndCommandsAreTheShells) {
  Facts facts;
  facts.localizedComputerName = "a\"b\"`printf c`$((1+1))";
  facts.userName = "$USER_WITHOUT_VALUE'd'";
  const auto name =
      composeFilename("(Machine Name)-(Username) Date&Time", "YYYY/MM/DD - Numerical Month", facts);
  const ScratchFolder folder;
  const auto script = folder.writeScript("name.sh", "printf %s \"" + name + "\"\n");
  EXPECT_THAT(runTool(commandForScript({script}, "")).output,
              testing::MatchesRegex("abc2-'d' 20[0-9]{2}[01][0-9][0-3][0-9]-[0-2][0-9][0-5][0-9]"));
}

TEST(FileNaming, DateFormats) {
  const std::pair<const char*, std::string> rows[] = {{"DD/MM/YYYY", "%d%b%Y"},
                                                      {"MM/DD/YYYY", "%b%d%Y"},
                                                      {"YYYY/MM/DD", "%Y%b%d"},
                                                      {"YYYY/DD/MM", "%Y%d%b"},
                                                      {"DD/MM/YYYY - Numerical Month", "%d%m%Y"},
                                                      {"MM/DD/YYYY - Numerical Month", "%m%d%Y"},
                                                      {"YYYY/MM/DD - Numerical Month", "%Y%m%d"},
                                                      {"YYYY/DD/MM - Numerical Month", "%Y%d%m"},
                                                      {"yyyy/mm/dd", "%d%b%Y"},
                                                      {"YYYY/MM/DD ", "%d%b%Y"}};
  for (const auto& [format, fields] : rows) {
    EXPECT_EQ(getDateAndTimeString(format), "`date +" + fields + "-%H%M`");
    EXPECT_EQ(getDateString(format), "`date +" + fields + "`");
  }
}

TEST(FileNaming, TokensAreReplacedOneAfterTheOther) {
  const std::array<const char*, 4> rows[] = {
      {"Studio", "anna", "(Machine Name)(Username)(Machine Name)-(Email Client)",
       "StudioannaStudio-(Email Client)"},
      {"Studio", "anna", "Date&Time Date Date&Time",
       "`date +%d%b%Y-%H%M` `date +%d%b%Y` `date +%d%b%Y-%H%M`"},
      {"DateServer", "Date&Time", "(Machine Name) (Username)", "`date +%d%b%Y`Server `date +%d%b%Y-%H%M`"},
      {"Mac-(Username)", "anna", "(Machine Name)", "Mac-anna"},
      {"Studio", "(Machine Name)", "(Username)", "(Machine Name)"},  // that one had its turn
      {"Studio", "anna", "(machine name) (USERNAME) date DATE", "(machine name) (USERNAME) date DATE"},
  };
  for (const auto& [machine, user, filenameTemplate, name] : rows) {
    auto facts = annasFacts();
    facts.localizedComputerName = machine;
    facts.userName = user;
    EXPECT_EQ(composeFilename(filenameTemplate, kDefaultDateFormat, facts), name);
  }
}

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

TEST(QSComputerName, HostNameUpToLocalInLowerCaseAndLocalizedOnlyWithoutItsBlanks) {
  const struct {
    const char *host, *name, *localized;
  } rows[] = {{"Office-Mac.local", "office-mac", "Office-Mac.local"},
              {"ZA.localhost.local", "za", "ZA.localhost.local"},
              {" \tAnna's  Mac\t.LOCAL.", "anna's  mac\t", "-\tAnna's--Mac\t.LOCAL."},
              {"local", "local", "local"},
              {".local.Mac", "Unknown Computer Name", ".local.Mac"},
              {" ", "Unknown Computer Name", "-"}};
  for (const auto& row : rows) {
    EXPECT_EQ(QSComputerName::getComputerName(row.host), row.name);
    EXPECT_EQ(QSComputerName::getLocalizedComputerName(row.host), row.localized);
  }
}

}  // namespace
}  // namespace corvane
