#include <gmock/gmock.h>
#include <sys/stat.h>
#include <filesystem>

#include "tests/tools/DittoKit.h"

namespace corvane {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

class DittoArchiveTest : public testing::Test, protected DittoKit {
 protected:
  // Names that every unpacking program can give back.
  void makePlainTree() const {
    makeFolder("source/sub/empty");
    makeFolder("source/-dash");
    write("source/-dash/-file", "in a folder");
    write("source/empty", "");
    write("source/zeros", std::string(1'000'000, '\0'), 0640);
    write("source/program", "#!/bin/sh\n", 0755);
    write("source/\xc3\xa9t\xc3\xa9", "accents");
    write("source/" + std::string(255, 'n'), "long name");
    makeLink("source/link", "sub/empty");
    makeLink("source/dangling", "/nowhere/at all");
    // As late as possible: what is put into a folder changes its time.
    EXPECT_EQ(shell("chmod 500 source/sub; touch -d '2001-02-03 04:05:07 UTC' source/sub/empty source/sub "
                    "source/zeros "
                    "source/program")
                  .status,
              0);
  }
};

class UnpackTest : public DittoArchiveTest, public testing::WithParamInterface<const char*> {};

TEST_P(UnpackTest, GivesBackBytesModesLinksAndTimes) {
  makePlainTree();
  ASSERT_EQ(ditto({"-ck", path("source"), path("a.zip")}).status, 0);
  const ToolResult unpacked = shell("mkdir out; " + std::string(GetParam()));
  EXPECT_EQ(unpacked.status, 0) << unpacked.output;
  EXPECT_EQ(contents(path("out"), Times::seconds), contents(path("source"), Times::seconds));
}

INSTANTIATE_TEST_SUITE_P(Programs, UnpackTest,
                         testing::Values("$DITTO -x -k a.zip out", "unzip -q a.zip -d out",
                                         "bsdtar -xpf a.zip -C out"));

TEST_F(DittoArchiveTest, KeepsEveryNameThatAFileCanHave) {
  // A letter with its accent composed and decomposed: two files. Bytes that are no UTF-8, in a link's target
  // too.
  for (const char* name :
       {"e\xcc\x81", "\xc3\xa9", "\xff\xfe", "two\nlines", "-", " ", "back\\slash", "c:d"}) {
    makeFolder("source");
    write("source/" + std::string(name), name);
  }
  makeLink("source/to\xfe", "\xff");
  makeLink("source/to\xc3\xa9", "e\xcc\x81");
  ASSERT_EQ(ditto({"-ck", path("source"), path("a.zip")}).status, 0);
  const ToolResult unpacked = ditto({"-xk", path("a.zip"), path("new/out")});
  EXPECT_EQ(unpacked.status, 0) << unpacked.output;
  EXPECT_EQ(contents(path("new/out"), Times::seconds), contents(path("source"), Times::seconds));
}

struct MarkCase {
  const char* name;
  int mark;  // bit 11 of the flags, in the second byte of the field
};

class MarkTest : public DittoArchiveTest, public testing::WithParamInterface<MarkCase> {};

TEST_P(MarkTest, CallsNamesUtf8WhenTheyAreAndNeedIt) {
  write(GetParam().name, "x");
  ASSERT_EQ(ditto({"-ck", path(GetParam().name), path("a.zip")}).status, 0);
  EXPECT_EQ(read("a.zip").at(7) & 0x08, GetParam().mark);
}

INSTANTIATE_TEST_SUITE_P(Names, MarkTest,
                         testing::Values(MarkCase{"plain", 0}, MarkCase{"\xc3\xa9", 8}, MarkCase{"\xc3", 0}));

struct OptionsCase {
  std::vector<std::string> options;
  std::vector<std::string> names;
};

class OptionsTest : public DittoArchiveTest, public testing::WithParamInterface<OptionsCase> {};

TEST_P(OptionsTest, AreUnderstoodInEveryGrouping) {
  makeFolder("source/sub");
  write("source/file", "x");
  auto arguments = GetParam().options;
  arguments.insert(arguments.end(), {path("source/"), path("a.zip")});
  const ToolResult result = ditto(arguments);
  EXPECT_EQ(result.status, 0) << result.output;
  EXPECT_EQ(namesInArchive(path("a.zip")), GetParam().names);
}

const std::vector<std::string> kContents = {"file", "sub/"};

INSTANTIATE_TEST_SUITE_P(
    Groupings, OptionsTest,
    testing::Values(OptionsCase{{"-ck"}, kContents}, OptionsCase{{"-ckX"}, kContents},
                    OptionsCase{{"-c", "-k", "-X", "--rsrc"}, kContents},
                    OptionsCase{{"-k", "-Xc"}, kContents},
                    OptionsCase{{"-V", "-ckv", "--sequesterRsrc", "--norsrc", "--extattr", "--noextattr",
                                 "--acl", "--noacl", "--qtn", "--noqtn", "--"},
                                kContents},
                    OptionsCase{{"-ck", "--keepParent"}, {"source/", "source/file", "source/sub/"}}));

class UsageTest : public DittoArchiveTest, public testing::WithParamInterface<std::vector<std::string>> {};

TEST_P(UsageTest, IsShownForEverythingElse) {
  const ToolResult result = ditto(GetParam());
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.output, StartsWith("usage: ditto "));
}

using Arguments = std::vector<std::string>;
INSTANTIATE_TEST_SUITE_P(Arguments, UsageTest,
                         testing::Values(Arguments{}, Arguments{"/etc/passwd"}, Arguments{"a", "b", "c"},
                                         Arguments{"-c", "a", "b"}, Arguments{"-x", "a", "b"},
                                         Arguments{"-k", "a", "b"}, Arguments{"-cxk", "a", "b"},
                                         Arguments{"-z", "a", "b"}, Arguments{"--other", "a", "b"},
                                         Arguments{"-ck", "a"}, Arguments{"-ck", "", "b"}));

TEST_F(DittoArchiveTest, LeavesItselfOut) {
  makeFolder("source");
  write("source/file", "x");
  for (int run = 0; run < 2; ++run) {
    ASSERT_EQ(ditto({"-ck", path("source"), path("source/own.zip")}).status, 0);
    EXPECT_THAT(namesInArchive(path("source/own.zip")), ElementsAre("file"));
  }
}

TEST_F(DittoArchiveTest, GoesDeeperThanPathsAndDescriptorsReach) {
  const ToolResult made = shell(
      "mkdir source; cd source; n=$(printf '%0200d' 0); i=0\n"
      "while [ $i -lt 100 ]; do mkdir $n; cd -P ./$n; i=$((i+1)); done; echo leaf > leaf");
  EXPECT_EQ(made.status, 0) << made.output;
  const Arguments few = {"/usr/bin/prlimit", "--nofile=64"};
  EXPECT_EQ(ditto({"-ck", path("source"), path("a.zip")}, few).status, 0);
  EXPECT_EQ(ditto({"-xk", path("a.zip"), path("unpacked")}, few).status, 0);
  EXPECT_EQ(ditto({path("unpacked"), path("copied")}, few).status, 0);
  EXPECT_EQ(ditto({"-ck", path("copied"), path("b.zip")}, few).status, 0);
  EXPECT_EQ(namesInArchive(path("a.zip")).size(), 101U);
  EXPECT_TRUE(read("a.zip") == read("b.zip"));
  // Too deep for what removes the scratch folder.
  EXPECT_EQ(shell("rm -rf source unpacked copied").status, 0);
}

TEST_F(DittoArchiveTest, HoldsMoreEntriesThanTheSmallFormCounts) {
  // In memory where there is a folder for that: so many files take their time on a disk.
  const ToolResult result = shell(
      "many=$(mktemp -d /dev/shm/ditto.XXXXXX || mktemp -d ./XXXXXX) 2>&-; trap 'rm -rf \"$many\"' EXIT\n"
      "(cd \"$many\"; seq 1 66000 | xargs touch); \"$DITTO\" -ck \"$many\" a.zip; bsdtar -tf a.zip | wc -l");
  EXPECT_EQ(result.output, "66000\n");
}

}  // namespace
}  // namespace corvane
