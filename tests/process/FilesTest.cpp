#include "process/Files.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/FullDisk.h"
#include "tests/support/ScratchFolder.h"

namespace corvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class FilesTest : public testing::Test {
 protected:
  // What readFile answers, or its complaint about the file.
  std::string readOrProblem(const std::string& name, std::size_t limit) {
    const auto bytes = readFile(folder.path(name), limit, problem);
    if (bytes) return *bytes;
    EXPECT_THAT(problem, HasSubstr("cannot read " + folder.path(name) + ": "));
    return problem;
  }

  const ScratchFolder folder;
  std::string problem;
};

TEST_F(FilesTest, ReadsRegularFilesUpToTheLimit) {
  const std::string bytes = std::string("a\0b\r\n", 5) + std::string(1000, '\xFF');
  folder.write("file", bytes);
  folder.write("empty", "");
  EXPECT_EQ(readOrProblem("file", bytes.size()), bytes);
  EXPECT_THAT(readOrProblem("file", bytes.size() - 1), HasSubstr("larger than 1004 bytes"));
  EXPECT_EQ(readOrProblem("empty", 0), "");
  EXPECT_THAT(readOrProblem("missing", 10), HasSubstr("No such file"));
  EXPECT_THAT(readOrProblem("file/below", 10), HasSubstr("Not a directory"));
}

TEST_F(FilesTest, ReadsNothingThatIsNoFile) {
  ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
  folder.makeFolder("folder");
  ASSERT_EQ(::symlink("/dev/zero", folder.path("device").c_str()), 0);
  for (const char* name : {"pipe", "folder", "device"}) {
    EXPECT_THAT(readOrProblem(name, 10), HasSubstr("it is not a file"));
  }
}

TEST_F(FilesTest, TellsFoldersWithEntriesFromOthers) {
  folder.makeFolder("empty");
  folder.write("hidden/.file", "");
  folder.write("file", "");
  const struct {
    const char* name;
    bool exists, isFolder, hasEntries;
  } rows[] = {{"empty", true, true, false}, {"hidden", true, true, true},      {"linked", true, true, true},
              {"file", true, false, false}, {"dangling", false, false, false}, {"no", false, false, false}};
  ASSERT_EQ(::symlink("hidden", folder.path("linked").c_str()), 0);
  ASSERT_EQ(::symlink("nowhere", folder.path("dangling").c_str()), 0);
  for (const auto& row : rows) {
    const auto path = folder.path(row.name);
    EXPECT_EQ(fileExists(path), row.exists) << row.name;
    EXPECT_EQ(isFolder(path), row.isFolder) << row.name;
    EXPECT_EQ(folderHasEntries(path), row.hasEntries) << row.name;
  }
}

TEST_F(FilesTest, ReplacesAFileAsAWhole) {
  folder.write("file", "something longer than what follows", 0666);
  EXPECT_TRUE(writeFileAtomically(folder.path("file"), "new", problem)) << problem;
  EXPECT_EQ(folder.read("file"), "new");
  struct stat status {};
  ASSERT_EQ(::stat(folder.path("file").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, mode_t{0600});
  EXPECT_THAT(folder.list(), ElementsAre("file"));
}

TEST_F(FilesTest, KeepsTheOldFileWhenTheNewOneCannotBeWritten) {
  folder.write("file", "old");
  bool written = true;
  {
    const FullDisk full;
    written = writeFileAtomically(folder.path("file"), "longer than fits", problem);
  }
  EXPECT_FALSE(written);
  EXPECT_THAT(problem, HasSubstr("cannot write " + folder.path("file") + ": File too large"));
  EXPECT_EQ(folder.read("file"), "old");
  EXPECT_THAT(folder.list(), ElementsAre("file"));
}

TEST_F(FilesTest, MakesFoldersDownToTheLast) {
  EXPECT_TRUE(makeFolders(folder.path("a/b/c")));
  EXPECT_TRUE(makeFolders(folder.path("a/b/c")));
  EXPECT_TRUE(isFolder(folder.path("a/b/c")));
  folder.write("file", "");
  EXPECT_FALSE(makeFolders(folder.path("file")));
  EXPECT_FALSE(makeFolders(folder.path("file/below")));
}

TEST_F(FilesTest, RemovesATreeButNothingBehindItsLinks) {
  folder.write("kept/file", "precious");
  folder.write("tree/a/b/.hidden", "");
  ASSERT_EQ(::symlink(folder.path("kept").c_str(), folder.path("tree/a/link").c_str()), 0);
  ASSERT_EQ(::symlink("nowhere", folder.path("tree/dangling").c_str()), 0);
  EXPECT_TRUE(removeTree(folder.path("tree")));
  EXPECT_THAT(folder.list(), ElementsAre("kept"));

  ASSERT_EQ(::symlink("kept", folder.path("link").c_str()), 0);
  EXPECT_TRUE(removeTree(folder.path("link")));
  EXPECT_THAT(folder.list(), ElementsAre("kept"));
  EXPECT_EQ(folder.read("kept/file"), "precious");
  EXPECT_FALSE(removeFile(folder.path("kept")));
  EXPECT_TRUE(removeFile(folder.path("missing")) && removeTree(folder.path("missing")));
}

}  // namespace
}  // namespace corvane
