#include "process/Log.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "tests/support/StandardError.h"

namespace corvane {
namespace {

using testing::MatchesRegex;

constexpr const char* kStamp =
    "[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3} BackupEngine\\[[0-9]+:[0-9a-f]+\\] ";

TEST(Log, WritesOneStampedLine) {
  for (const char* text : {"Backup Starting...", "Backup Starting...\n"}) {
    const StandardError errors;
    log(text);
    EXPECT_THAT(errors.text(), MatchesRegex(std::string(kStamp) + "Backup Starting\\.\\.\\.\n"));
  }
  const StandardError errors;
  log("");
  EXPECT_THAT(errors.text(), MatchesRegex(std::string(kStamp) + "\n"));
}

TEST(Log, IsAppendedToTheFileThatStandardErrorIsReopenedOn) {
  const StandardError errors;
  const ScratchFolder folder;
  for (const char* text : {"first", "second"}) {
    ASSERT_TRUE(reopenStandardError(folder.path("Logs/Corvane.log")));
    log(text);
  }
  EXPECT_THAT(folder.read("Logs/Corvane.log"),
              MatchesRegex(std::string(kStamp) + "first\n" + kStamp + "second\n"));
  struct stat status {};
  ASSERT_EQ(::stat(folder.path("Logs/Corvane.log").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, mode_t{0600});
}

TEST(Log, StandardErrorStaysWhenTheFileCannotBeOpened) {
  const StandardError errors;
  const ScratchFolder folder;
  folder.write("file", "");
  EXPECT_FALSE(reopenStandardError(folder.path()));
  EXPECT_FALSE(reopenStandardError(folder.path("file/Corvane.log")));
  log("still here");
  EXPECT_THAT(errors.text(), MatchesRegex(std::string(kStamp) + "still here\n"));
}

}  // namespace
}  // namespace corvane
