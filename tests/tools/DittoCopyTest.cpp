#include <gmock/gmock.h>
#include <sys/xattr.h>
#include <cerrno>

#include "tests/tools/DittoKit.h"

namespace corvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class DittoCopyTest : public testing::Test, protected DittoKit {};

TEST_F(DittoCopyTest, MergesAFolderIntoAnother) {
  makeFolder("source/sub");
  write("source/sub/file", "new", 0604);
  write("source/program", "#!", 0755);
  makeLink("source/link", "sub/file");
  ASSERT_EQ(shell("chmod 550 source/sub; touch -d '2001-02-03 04:05:07.123456789' source/sub/file source/sub")
                .status,
            0);
  ASSERT_EQ(ditto({path("source"), path("deep/new")}).status, 0);
  EXPECT_EQ(contents(path("deep/new"), Times::nanoseconds), contents(path("source"), Times::nanoseconds));

  makeFolder("there/sub", 0700);
  write("there/sub/file", "old and longer");
  write("there/sub/other", "stays");
  write("there/target", "not written through the link");
  makeLink("there/program", "target");
  ASSERT_EQ(ditto({path("source"), path("there")}).status, 0);
  auto expected = contents(path("source"), Times::none);
  expected["sub/other"] = "file 420: stays";
  expected["target"] = "file 420: not written through the link";
  EXPECT_EQ(contents(path("there"), Times::none), expected);
}

struct FileCase {
  const char* source;
  const char* destination;
  const char* made;
};

class CopyFileTest : public DittoCopyTest, public testing::WithParamInterface<FileCase> {};

TEST_P(CopyFileTest, GoesToAPathOrIntoAFolder) {
  makeFolder("folder");
  write("file", "new", 0444);
  write("folder/old", "old");
  makeLink("alias", "file");
  const ToolResult result = ditto({"-X", path(GetParam().source), path(GetParam().destination)});
  ASSERT_EQ(result.status, 0) << result.output;
  EXPECT_EQ(contents(path(""), Times::nanoseconds)[GetParam().made],
            contents(path(""), Times::nanoseconds)["file"]);
}

INSTANTIATE_TEST_SUITE_P(Places, CopyFileTest,
                         testing::Values(FileCase{"file", "folder/new", "folder/new"},
                                         FileCase{"file", "folder/old", "folder/old"},
                                         FileCase{"file", "folder", "folder/file"},
                                         FileCase{"file", "folder/", "folder/file"},
                                         FileCase{"alias", "folder/new", "folder/new"},
                                         FileCase{"alias", "folder", "folder/alias"}));

TEST_F(DittoCopyTest, ExtendedAttributesAreKeptUnlessToldOtherwise) {
  makeFolder("source");
  write("source/file", "x", 0444);
  if (::setxattr(path("source/file").c_str(), "user.origin", "here", 4, 0) != 0 && errno == ENOTSUP) {
    GTEST_SKIP() << "the file system has no extended attributes";
  }
  for (const std::string option : {"--rsrc", "--norsrc", "--noextattr"}) {
    ASSERT_EQ(ditto({option, path("source"), path(option)}).status, 0);
    char value[8] = {};
    const ssize_t size = ::getxattr(path(option + "/file").c_str(), "user.origin", value, sizeof value);
    EXPECT_EQ(std::string(value), option == "--rsrc" ? "here" : "") << option << size;
  }
}

TEST_F(DittoCopyTest, DoesNotCopyADestinationIntoItself) {
  makeFolder("source/a");
  write("source/a/file", "x");
  ASSERT_EQ(ditto({path("source"), path("source/b")}, {"/usr/bin/timeout", "20"}).status, 0);
  EXPECT_THAT(contents(path("source/b"), Times::none), testing::SizeIs(2));
}

TEST_F(DittoCopyTest, NamesWhatItCannotCopyAndCopiesTheRest) {
  makeFolder("source/sub");
  makeFolder("source/taken");
  makeFolder("outside");
  write("source/sub/file", "x");
  write("source/z", "copied");
  makeFolder("there/z2");
  write("source/z2", "a file where a folder is");
  makeLink("there/sub", "../outside");
  write("there/taken", "a file where a folder is to be");
  ASSERT_EQ(shell("mkfifo source/pipe").status, 0);
  const ToolResult result = ditto({path("source"), path("there")});
  EXPECT_EQ(result.status, 1);
  for (const char* name : {"source/pipe", "there/sub", "there/taken", "there/z2"}) {
    EXPECT_THAT(result.output, HasSubstr("ditto: " + path(name) + ": "));
  }
  EXPECT_THAT(namesIn(path("there")), ElementsAre("sub", "taken", "z", "z2"));
  EXPECT_THAT(namesIn(path("outside")), ElementsAre());
}

}  // namespace
}  // namespace corvane
