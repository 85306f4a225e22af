#include "script/Rotation.h"

#include <gmock/gmock.h>
#include <cstdlib>

#include "process/RunTool.h"
#include "process/ScriptInterpreter.h"
#include "tests/support/ScratchFolder.h"

namespace corvane {
namespace {

using Names = std::vector<std::string>;

TEST(Rotation, PatternIsWhatTheNamesOfAClientsArchivesShare) {
  const std::pair<const char*, const char*> rows[] = {
      {"Studio-anna-Mail-`date +%d%b%Y`.qvb", "Studio-anna-Mail-"},
      {"Mail-`date +%d`-and-`date +%H`.qvb", "Mail-"},
      {"`date +%d%b%Y`-Studio-`date +%H%M`_Mail.qvb", "Mail.qvb"},
      {"`date +%d%b%Y`", ""},
      {"`date +%d%b%Y`-", ""},
      {"`date +%d%b%Y`–Üben.qvb", "Üben.qvb"},
      {"Mail-`hostname`.qvb", "Mail-`hostname`.qvb"},  // the user's own command is no date
      {"`dat`e Mail.qvb", "`dat`e Mail.qvb"},
      {"`date", "ate"},  // never closed: the last backquote is the first
      {"", ""},
  };
  for (const auto& [name, pattern] : rows) EXPECT_EQ(rotationPattern(name), pattern) << name;
}

class RotationTest : public testing::Test {
 protected:
  // In any user's language and style.
  RotationTest() {
    folder.makeFolder("backups");
    for (const auto& [name, value] : kStyle) ::setenv(name, value, 1);
  }
  ~RotationTest() override {
    for (const auto& [name, value] : kStyle) ::unsetenv(name);
  }

  // From the oldest to the newest.
  void makeArchives(const Names& names) const {
    for (const auto& name : names) {
      folder.write("backups/" + name, "archive");
      age(name, static_cast<int>(&name - names.data()));
    }
  }
  void age(const std::string& name, int day) const {
    const std::string date = "2024-03-" + std::to_string(10 + day);
    ASSERT_EQ(runTool({"/usr/bin/touch", "-d", date, folder.path("backups/" + name)}).status, 0);
  }

  // What the loop says, and then the sorted names of what it left.
  [[nodiscard]] std::string rotate(int limit) const {
    RunRecord record;
    record.currentFilename = "S-Mail-`date +%d%b%Y`.qvb";
    const auto script = folder.writeScript(
        "rotate.sh", addLimitedBackups(limit, "Mail", "", folder.path("backups"), record) + "\nls\n");
    return runTool(commandForScript({script}, "/usr/bin")).output;
  }

  static constexpr std::pair<const char*, const char*> kStyle[] = {
      {"TIME_STYLE", "long-iso"}, {"QUOTING_STYLE", "shell-always"}, {"LC_ALL", "C.UTF-8"}};
  const ScratchFolder folder;
};

// Whatever holds the pattern is one of the kind. Neither the name nor the order of writing tells its age.
TEST_F(RotationTest, RemovesTheOldestOfTheKindAndNothingElse) {
  EXPECT_EQ(rotate(3), "");
  makeArchives({"S-Postbox-1", "my-S-Mail-notes", "S-Mail-9", "S-Mail-1", "S-Mail-5"});
  EXPECT_EQ(rotate(4), "S-Mail-1\nS-Mail-5\nS-Mail-9\nS-Postbox-1\nmy-S-Mail-notes\n");
  EXPECT_EQ(rotate(3), "Removing old backup\nS-Mail-1\nS-Mail-5\nS-Mail-9\nS-Postbox-1\n");
  EXPECT_EQ(rotate(1), "Removing old backup\nRemoving old backup\nS-Mail-5\nS-Postbox-1\n");
}

// A folder is counted, and so is a name that is cut at its blank.
TEST_F(RotationTest, WhatCannotBeRemovedStays) {
  makeArchives({"S-Mail-1", "S-Mail-2"});
  folder.makeFolder("backups/S-Mail-folder");
  age("S-Mail-folder", -1);
  EXPECT_THAT(rotate(2), testing::EndsWith("S-Mail-1\nS-Mail-2\nS-Mail-folder\n"));
  makeArchives({"S-Mail-old copy", "a S-Mail-.txt"});
  age("S-Mail-old copy", -2);
  EXPECT_THAT(rotate(1),
              testing::EndsWith("S-Mail-1\nS-Mail-2\nS-Mail-folder\nS-Mail-old copy\na S-Mail-.txt\n"));
}

}  // namespace
}  // namespace corvane
