#include "process/Log.h"

#include <gmock/gmock.h>

#include "tests/support/StandardError.h"

namespace corvane {
namespace {

using testing::MatchesRegex;

const std::string kStamp =
    "[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3} BackupEngine\\[[0-9]+:[0-9a-f]+\\] ";

TEST(Log, WritesOneStampedLineEachToWhereStandardErrorLeads) {
  const StandardError errors;
  const ScratchFolder folder;
  const std::string file = folder.path("Logs/Corvane.log");
  for (const char* text : {"first", "sec\xC2\x07\x9Bond\n"}) {
    ASSERT_TRUE(reopenStandardError(file));
    log(text);
  }
  // Where the file cannot be opened, it stays as it is.
  EXPECT_FALSE(reopenStandardError(folder.path()));
  EXPECT_FALSE(reopenStandardError(file + "/Corvane.log"));
  log("");
  EXPECT_THAT(folder.read("Logs/Corvane.log"),
              MatchesRegex(kStamp + "first\n" + kStamp + "sec\uFFFD\uFFFDond\n" + kStamp + "\n"));
  EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0600));
}

}  // namespace
}  // namespace corvane
