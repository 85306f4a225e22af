#include "script/FileNaming.h"

#include <gmock/gmock.h>
#include <array>

#include "process/RunTool.h"
#include "process/ScriptInterpreter.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/ScriptFixtures.h"

namespace corvane {
namespace {

// What the shell makes of `name`, as the recipes write it.
std::string evaluated(const std::string& name) {
  const ScratchFolder folder;
  const auto script = folder.writeScript("name.sh", "printf %s \"" + name + "\"\n");
  return runTool(commandForScript({script}, "")).output;
}

TEST(FileNaming, TheShellFillsInTheDate) {
  EXPECT_THAT(evaluated("Mail-" + getDateAndTimeString("YYYY/MM/DD - Numerical Month") + ".qvb"),
              testing::MatchesRegex("Mail-20[0-9]{2}[01][0-9][0-3][0-9]-[0-2][0-9][0-5][0-9]\\.qvb"));
  EXPECT_THAT(evaluated(getDateString("DD/MM/YYYY")), testing::MatchesRegex("[0-3][0-9][^ -]+20[0-9]{2}"));
}

// Names reach the shell as they are: it is the user's own shell, and this is how dates get in too.
TEST(FileNaming, QuotesAndCommandsInNamesAreTheShells) {
  Facts facts;
  facts.localizedComputerName = "a\"b\"`printf c`$((1+1))";
  facts.userName = "$USER_WITHOUT_VALUE'd'";
  EXPECT_EQ(evaluated(composeFilename("(Machine Name)-(Username)", "", facts)), "abc2-'d'");
}

TEST(FileNaming, DateFormats) {
  const std::array<const char*, 3> rows[] = {
      {"DD/MM/YYYY", "`date +%d%b%Y-%H%M`", "`date +%d%b%Y`"},
      {"MM/DD/YYYY", "`date +%b%d%Y-%H%M`", "`date +%b%d%Y`"},
      {"YYYY/MM/DD", "`date +%Y%b%d-%H%M`", "`date +%Y%b%d`"},
      {"YYYY/DD/MM", "`date +%Y%d%b-%H%M`", "`date +%Y%d%b`"},
      {"DD/MM/YYYY - Numerical Month", "`date +%d%m%Y-%H%M`", "`date +%d%m%Y`"},
      {"MM/DD/YYYY - Numerical Month", "`date +%m%d%Y-%H%M`", "`date +%m%d%Y`"},
      {"YYYY/MM/DD - Numerical Month", "`date +%Y%m%d-%H%M`", "`date +%Y%m%d`"},
      {"YYYY/DD/MM - Numerical Month", "`date +%Y%d%m-%H%M`", "`date +%Y%d%m`"},
      {"yyyy/mm/dd", "`date +%d%b%Y-%H%M`", "`date +%d%b%Y`"},
      {"YYYY/MM/DD ", "`date +%d%b%Y-%H%M`", "`date +%d%b%Y`"},
      {"", "`date +%d%b%Y-%H%M`", "`date +%d%b%Y`"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(getDateAndTimeString(row[0]), row[1]) << row[0];
    EXPECT_EQ(getDateString(row[0]), row[2]) << row[0];
  }
}

TEST(FileNaming, TokensAreReplacedOneAfterTheOther) {
  const std::array<const char*, 4> rows[] = {
      {"Studio", "anna", "(Machine Name)-(Username)-(Email Client)-Date.qvb",
       "Studio-anna-(Email Client)-`date +%Y%m%d`.qvb"},
      {"Studio", "anna", "Date&Time Date Date&Time.qvb",
       "`date +%Y%m%d-%H%M` `date +%Y%m%d` `date +%Y%m%d-%H%M`.qvb"},
      {"Studio", "anna", "(Username)(Machine Name)(Username)", "annaStudioanna"},
      {"DateServer", "anna", "(Machine Name).qvb", "`date +%Y%m%d`Server.qvb"},
      {"Studio", "Date&Time", "(Username).qvb", "`date +%Y%m%d-%H%M`.qvb"},
      {"Mac-(Username)", "anna", "(Machine Name).qvb", "Mac-anna.qvb"},
      {"Studio", "(Machine Name)", "(Username).qvb", "(Machine Name).qvb"},  // that one had its turn
      {"Studio", "anna", "(machine name) (USERNAME) date DATE.qvb",
       "(machine name) (USERNAME) date DATE.qvb"},
      {"Studio", "anna", "backup.qvb", "backup.qvb"},
      {"Studio", "anna", "", ""},
  };
  for (const auto& [machine, user, filenameTemplate, name] : rows) {
    auto facts = annasFacts();
    facts.localizedComputerName = machine;
    facts.userName = user;
    EXPECT_EQ(composeFilename(filenameTemplate, "YYYY/MM/DD - Numerical Month", facts), name);
  }
}

TEST(FileNaming, ClientIsNamedWhereverItsTokenStands) {
  std::string name = "(Email Client)-(email client)-(Email Client).qvb";
  nameClient(name, "Mail+AB");
  EXPECT_EQ(name, "Mail+AB-(email client)-Mail+AB.qvb");
  nameClient(name, "Eudora8");
  EXPECT_EQ(name, "Mail+AB-(email client)-Mail+AB.qvb");
}

}  // namespace
}  // namespace corvane
