#include "platform/Trash.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <unistd.h>
#include <cstdlib>

#include "process/Files.h"
#include "tests/support/PrivateCrontab.h"

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

TEST_F(TrashTest, AnotherVolumeHasATrashOfItsOwn) {
  const PrivateCrontab ownMounts;
  const std::string volume = home.makeFolder("Volume");
  if (::mount("none", volume.c_str(), "tmpfs", 0, nullptr) != 0) GTEST_SKIP() << "cannot mount";
  home.write("Volume/a/b/file", "content");
  EXPECT_TRUE(moveToTrash(volume + "/a/b", problem)) << problem;
  const std::string trash = "Volume/.Trash-" + std::to_string(::getuid());
  EXPECT_EQ(home.read(trash + "/files/b/file"), "content");
  EXPECT_THAT(home.read(trash + "/info/b.trashinfo"), HasSubstr("\nPath=a/b\n"));
  EXPECT_FALSE(folderHasEntries(home.path("data/Trash/info")));
  ::umount2(volume.c_str(), MNT_DETACH);
}

}  // namespace
}  // namespace corvane
