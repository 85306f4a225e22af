#include "script/Rotation.h"

#include <gmock/gmock.h>
#include <sys/time.h>

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

}  // namespace
}  // namespace corvane
