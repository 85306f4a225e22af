#include "platform/Trash.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/HomeDirectory.h"
#include "process/Files.h"
#include "tests/support/OwnMounts.h"
#include "tests/support/ScratchFolder.h"

namespace corvane {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

constexpr const char* kDate = "DeletionDate=[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\n";

class TrashTest : public testing::Test {
 protected:
  TrashTest() { ::setenv("XDG_DATA_HOME", home.path("data").c_str(), 1); }
  ~TrashTest() override { ::unsetenv("XDG_DATA_HOME"); }

  ScratchFolder home;
  std::string problem;
};

TEST(HomeDirectory, IsSpeltInOneWay) {
  const std::string before = std::getenv("HOME");
  for (const char* home : {"/home/anna", "/home/anna/", "//home//anna//"}) {
    ::setenv("HOME", home, 1);
    EXPECT_EQ(getHomeDirectory(), "/home/anna");
  }
  ::setenv("HOME", before.c_str(), 1);
}

TEST_F(TrashTest, KeepsWhatCarriesTheSameName) {
  for (const char* content : {"first", "second"}) {
    home.write("Grüße 100%/A b/file", content);
    EXPECT_TRUE(moveToTrash(home.path("Grüße 100%/A b"), problem)) << problem;
  }
  EXPECT_EQ(home.read("data/Trash/files/A b/file"), "first");
  EXPECT_EQ(home.read("data/Trash/files/A b.2/file"), "second");
  const std::string path = home.path() + "/Gr%C3%BC%C3%9Fe%20100%25/A%20b";
  EXPECT_THAT(home.read("data/Trash/info/A b.2.trashinfo"),
              MatchesRegex("\\[Trash Info\\]\nPath=" + path + "\n" + kDate));
}

TEST_F(TrashTest, AFailureLeavesNothingBehind) {
  EXPECT_FALSE(moveToTrash(home.path("missing"), problem));
  EXPECT_THAT(problem, HasSubstr(home.path("missing") + ": No such file"));
  EXPECT_FALSE(folderHasEntries(home.path("data/Trash/info")));
}

// A link is planted in the folder for all users, which is sticky; then one in the next place, too.
TEST_F(TrashTest, AnotherVolumeHasATrashOfItsOwn) {
  const std::string volume = home.makeFolder("Volume");
  const std::string user = std::to_string(::getuid());
  OwnMounts mounts;
  mounts.makeVolume(volume);
  if (!mounts.problem().empty()) GTEST_SKIP() << mounts.problem();
  ASSERT_EQ(::mkdir((volume + "/.Trash").c_str(), 0700) + ::chmod((volume + "/.Trash").c_str(), 01700), 0);
  const std::string planted = home.makeFolder("Volume/planted");
  ASSERT_EQ(::symlink(planted.c_str(), (volume + "/.Trash/" + user).c_str()), 0);
  home.write("Volume/a/b/file", "content");
  EXPECT_TRUE(moveToTrash(volume + "/a/b", problem)) << problem;
  const std::string trash = "Volume/.Trash-" + user;
  EXPECT_EQ(home.read(trash + "/files/b/file"), "content");
  EXPECT_THAT(home.read(trash + "/info/b.trashinfo"), HasSubstr("\nPath=a/b\n"));
  EXPECT_FALSE(folderHasEntries(home.path("data/Trash/info")));

  removeTree(home.path(trash));
  ASSERT_EQ(::symlink(planted.c_str(), home.path(trash).c_str()), 0);
  EXPECT_FALSE(moveToTrash(volume + "/a", problem));
  EXPECT_THAT(problem, HasSubstr("Permission denied"));
  EXPECT_TRUE(isFolder(volume + "/a"));
  EXPECT_FALSE(folderHasEntries(planted));
}

}  // namespace
}  // namespace corvane
