// Files, and what is one: the lock and the log.
#include "process/Files.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <csignal>

#include "process/FileLock.h"
#include "process/Log.h"
#include "process/RunTool.h"
#include "tests/support/StandardError.h"

namespace corvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class FilesTest : public testing::Test {
 protected:
  void makeLink(const std::string& name, const std::string& target) const {
    std::filesystem::create_symlink(target, folder.path(name));
  }

  const ScratchFolder folder;
  std::string problem;
};

TEST_F(FilesTest, ReadsRegularFilesUpToTheLimit) {
  const std::string bytes = std::string("a\0b\r\n", 5) + std::string(1000, '\xFF');
  EXPECT_EQ(readFile(folder.write("file", bytes), bytes.size(), problem), bytes);
  EXPECT_EQ(readFile(folder.write("empty", ""), 0, problem), "");
  ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
  folder.makeFolder("folder");
  makeLink("device", "/dev/zero");
  const std::pair<const char*, const char*> rows[] = {
      {"file", "it is larger than 1004 bytes"}, {"missing", "No such file or directory"},
      {"file/below", "Not a directory"},        {"pipe", "it is not a file"},
      {"folder", "it is not a file"},           {"device", "it is not a file"}};
  for (const auto& [name, cause] : rows) {
    EXPECT_FALSE(readFile(folder.path(name), 1004, problem)) << name;
    EXPECT_EQ(problem, "cannot read " + folder.path(name) + ": " + cause);
  }
}

TEST_F(FilesTest, TellsFoldersWithEntriesFromOthers) {
  folder.makeFolder("empty");
  folder.write("hidden/.file", "");
  folder.write("file", "");
  makeLink("linked", "hidden");
  makeLink("dangling", "nowhere");
  const std::pair<const char*, int> rows[] = {{"empty", 110}, {"hidden", 111}, {"linked", 111},
                                              {"file", 100},  {"dangling", 0}, {"no", 0}};
  for (const auto& [name, answers] : rows) {
    const auto path = folder.path(name);
    EXPECT_EQ(100 * fileExists(path) + 10 * isFolder(path) + folderHasEntries(path), answers) << name;
  }
}

TEST_F(FilesTest, ReplacesAFileAsAWholeOrNotAtAll) {
  const std::string path = folder.write("file", "something longer than what follows", 0666);
  EXPECT_TRUE(writeFileAtomically(path, "new", problem)) << problem;
  EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0600));
  const std::string taken = folder.makeFolder("taken");
  EXPECT_FALSE(writeFileAtomically(taken, "new", problem));
  EXPECT_EQ(problem, "cannot write " + taken + ": Is a directory");
  EXPECT_EQ(folder.read("file"), "new");
  EXPECT_THAT(folder.list(), ElementsAre("file", "taken"));
}

TEST_F(FilesTest, MakesFoldersDownToTheLast) {
  for (int time = 0; time < 2; ++time) EXPECT_TRUE(makeFolders(folder.path("a/b/c")));
  EXPECT_TRUE(isFolder(folder.path("a/b/c")));
  const std::string file = folder.write("file", "");
  EXPECT_FALSE(makeFolders(file) || makeFolders(file + "/below"));
}

TEST_F(FilesTest, RemovesATreeButNothingBehindItsLinks) {
  folder.write("kept/file", "precious");
  folder.write("tree/a/b/.hidden", "");
  makeLink("tree/a/link", folder.path("kept"));
  makeLink("tree/dangling", "nowhere");
  makeLink("link", "kept");
  for (const char* name : {"tree", "link", "missing"}) EXPECT_TRUE(removeTree(folder.path(name))) << name;
  EXPECT_FALSE(removeFile(folder.path("kept")));
  EXPECT_TRUE(removeFile(folder.path("missing")));
  EXPECT_THAT(folder.list(), ElementsAre("kept"));
  EXPECT_EQ(folder.read("kept/file"), "precious");
}

using Outcome = FileLock::Outcome;

TEST_F(FilesTest, ALockIsHeldByOneUntilItEnds) {
  const std::string path = folder.path("made/lock");
  const auto another = [&] { return FileLock().acquire(path, problem); };
  std::string sleeper;
  {
    FileLock first;
    EXPECT_EQ(first.acquire(path, problem), Outcome::acquired);
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0600));
    EXPECT_EQ(another(), Outcome::heldByAnother);
    // A program that outlives its starter must not keep the lock.
    sleeper = runTool({"/bin/sh", "-c", "sleep 1000 >/dev/null 2>&1 & echo $!"}).output;
    first.release();
    EXPECT_EQ(another(), Outcome::acquired);
    for (int i = 0; i < 2; ++i) EXPECT_EQ(first.acquire(path, problem), Outcome::acquired);
  }
  EXPECT_EQ(another(), Outcome::acquired);
  EXPECT_EQ(problem, "");
  EXPECT_EQ(::kill(std::stoi(sleeper), SIGKILL), 0);
}

TEST_F(FilesTest, NoLockIsHadOnWhatIsNoFile) {
  makeLink("link", folder.write("other", ""));
  for (const std::string& path : {folder.path("link"), folder.makeFolder("folder")}) {
    EXPECT_EQ(FileLock().acquire(path, problem), Outcome::failed);
    EXPECT_TRUE(problem.starts_with("cannot lock " + path)) << problem;
  }
}

const std::string kStamp =
    "[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3} BackupEngine\\[[0-9]+:[0-9a-f]+\\] ";

TEST_F(FilesTest, TheLogHasOneStampedLineEachWhereStandardErrorLeads) {
  const StandardError errors;
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
              testing::MatchesRegex(kStamp + "first\n" + kStamp + "sec\uFFFD\uFFFDond\n" + kStamp + "\n"));
  EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0600));
}

}  // namespace
}  // namespace corvane
