#include "script/Rotation.h"

#include <gmock/gmock.h>
#include <sys/time.h>

#include <cstdlib>
#include <filesystem>
#include <set>

#include "process/RunTool.h"
#include "process/ScriptInterpreter.h"
#include "tests/support/Golden.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/ScriptFixtures.h"

namespace corvane {
namespace {

TEST(Rotation, PatternIsWhatTheNamesOfAClientsArchivesShare) {
  const std::pair<const char*, const char*> cases[] = {
      {"Studio-anna-Mail-`date +%d%b%Y`.qvb", "Studio-anna-Mail-"},
      {"Mail-`date +%d`-and-`date +%H`.qvb", "Mail-"},
      {"`date +%d%b%Y` Mail.qvb", "Mail.qvb"},
      {"`date +%d%b%Y`-Studio-`date +%H%M`_Mail.qvb", "Mail.qvb"},
      {"`date +%d%b%Y`", ""},
      {"`date +%d%b%Y`-", ""},
      {"Mail.qvb", "Mail.qvb"},
      {"Mail-`hostname`.qvb", "Mail-`hostname`.qvb"},  // the user's own command is no date
      {"`dat`e Mail.qvb", "`dat`e Mail.qvb"},
      {"`date", "ate"},  // never closed: the last backquote is the first
      {"", ""},
  };
  for (const auto& [name, pattern] : cases) EXPECT_EQ(rotationPattern(name), pattern) << name;
}

TEST(Rotation, LoopIsAppendedWithPatternAndLimitAsTheyAre) {
  RunRecord record;
  record.currentFilename = "Anna\\ Mail-`date +%d%b%Y`.qvb";
  const auto golden =
      readGolden("snippets/rotation",
                 {{"{destination}", kBackupDisk}, {"{count}", "12"}, {"{pattern}", "Anna\\ Mail-"}});
  EXPECT_TRUE(sameText("so far\n" + golden, addLimitedBackups(12, "Mail", "so far\n", kBackupDisk, record)));
}

void makeArchive(const ScratchFolder& folder, const std::string& name, int day) {
  const auto path = folder.write("backups/" + name, "archive");
  const timeval when[2] = {{86400 * (20000 + day), 0}, {86400 * (20000 + day), 0}};
  ASSERT_EQ(::utimes(path.c_str(), when), 0);
}

std::string runRotation(const ScratchFolder& folder, int limit) {
  RunRecord record;
  record.currentFilename = "Studio-anna-Mail-`date +%d%b%Y`.qvb";
  const auto script = folder.writeScript(
      "rotate.sh", addLimitedBackups(limit, "Mail", "", folder.path("backups"), record) + "\nls\n");
  return runTool(commandForScript({script}, "/usr/bin")).output;
}

TEST(Rotation, LoopRemovesTheOldestOfTheKindAndNothingElse) {
  const ScratchFolder folder;
  // Neither the name nor the order of writing tells which one is old.
  makeArchive(folder, "Studio-anna-Mail-01Feb2026.qvb", 40);
  makeArchive(folder, "Studio-anna-Mail-02Jan2026.qvb", 10);
  makeArchive(folder, "Studio-anna-Mail-09Jan2026.qvb", 20);
  makeArchive(folder, "Studio-anna-Postbox-01Jan2026.qvb", 1);
  EXPECT_EQ(runRotation(folder, 3).find("Removing"), std::string::npos);
  EXPECT_EQ(runRotation(folder, 1),
            "Removing old backup\nRemoving old backup\n"
            "Studio-anna-Mail-01Feb2026.qvb\nStudio-anna-Postbox-01Jan2026.qvb\n");
}

std::set<std::string> backupsIn(const ScratchFolder& folder) {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder.path("backups"))) {
    names.insert(entry.path().filename());
  }
  return names;
}

struct PruneCase {
  const char* name;
  int archives;
  int limit;
  int left;
};

class PruneTest : public testing::TestWithParam<PruneCase> {};

TEST_P(PruneTest, LeavesTheNewestWhateverTheUsersLanguageAndStyle) {
  const ScratchFolder folder;
  folder.makeFolder("backups");
  for (int day = 1; day <= GetParam().archives; ++day) {
    makeArchive(folder, "Studio-anna-Mail-" + std::to_string(day * 7 % 97) + ".qvb", day);
  }
  makeArchive(folder, "notes.txt", 0);
  ::setenv("TIME_STYLE", "long-iso", 1);
  ::setenv("QUOTING_STYLE", "shell-always", 1);
  ::setenv("LC_ALL", "C.UTF-8", 1);
  runRotation(folder, GetParam().limit);
  for (const char* name : {"TIME_STYLE", "QUOTING_STYLE", "LC_ALL"}) ::unsetenv(name);

  std::set<std::string> expected{"notes.txt"};
  for (int day = GetParam().archives; day > GetParam().archives - GetParam().left; --day) {
    expected.insert("Studio-anna-Mail-" + std::to_string(day * 7 % 97) + ".qvb");
  }
  EXPECT_EQ(backupsIn(folder), expected);
}

INSTANTIATE_TEST_SUITE_P(Destinations, PruneTest,
                         testing::Values(PruneCase{"None", 0, 3, 0}, PruneCase{"Limit", 3, 3, 3},
                                         PruneCase{"OneMore", 4, 3, 3}, PruneCase{"Many", 40, 2, 2}),
                         [](const auto& test) { return test.param.name; });

// Whatever holds the pattern is one of the kind; a folder is counted, and stays.
TEST(Rotation, TakesForeignFilesOfThatNameForArchives) {
  const ScratchFolder folder;
  makeArchive(folder, "my-Studio-anna-Mail-notes.txt", 1);
  makeArchive(folder, "Studio-anna-Mail-2.qvb", 2);
  makeArchive(folder, "Studio-anna-Mail-3.qvb", 3);
  runRotation(folder, 2);
  EXPECT_EQ(backupsIn(folder), (std::set<std::string>{"Studio-anna-Mail-2.qvb", "Studio-anna-Mail-3.qvb"}));
  folder.makeFolder("backups/Studio-anna-Mail-folder");
  const timeval old[2] = {{0, 0}, {0, 0}};
  ASSERT_EQ(::utimes(folder.path("backups/Studio-anna-Mail-folder").c_str(), old), 0);
  runRotation(folder, 1);
  EXPECT_EQ(backupsIn(folder).size(), 3U);
}

// A foreign file whose name holds the pattern is one of the kind; a name with a blank is cut and stays.
TEST(Rotation, CountsByNameAndCannotRemoveNamesWithBlanks) {
  const ScratchFolder folder;
  makeArchive(folder, "Studio-anna-Mail-old copy.qvb", 1);
  makeArchive(folder, "not a Studio-anna-Mail-.txt", 2);
  makeArchive(folder, "Studio-anna-Mail-3.qvb", 3);
  makeArchive(folder, "Studio-anna-Mail-4.qvb", 4);
  runRotation(folder, 1);
  EXPECT_EQ(backupsIn(folder).size(), 4U);
}

}  // namespace
}  // namespace corvane
