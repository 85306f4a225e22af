#include <gmock/gmock.h>
#include <sys/stat.h>
#include <random>

#include "tests/tools/DittoKit.h"

namespace corvane {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

// One of them reads from a pipe, without a look at the directory.
constexpr const char* kReadersAreContent =
    "unzip -tqq a.zip && 7z t a.zip >7z.log && bsdtar -xOf - <a.zip >bsdtar.log && python3 -c \"\n"
    "import zipfile\nassert zipfile.ZipFile('a.zip').testzip() is None\"";

class DittoArchiveTest : public testing::Test, protected DittoKit {
 protected:
  // Names that every unpacking program can give back.
  void makePlainTree() const {
    makeFolder("source/sub/empty");
    makeFolder("source/-dash");
    write("source/-dash/-file", "in a folder");
    write("source/empty", "");
    write("source/blocks", blocks(), 0640);
    write("source/program", "#!/bin/sh\n", 0755);
    write("source/\xc3\xa9t\xc3\xa9 'and' \"so\"", "accents");
    write("source/" + std::string(255, 'n'), "long name");
    makeLink("source/link", "sub/empty");
    makeLink("source/loop", "loop");
    makeLink("source/dangling", "/nowhere/at all");
    // As late as possible: what is put into a folder changes its time.
    EXPECT_EQ(shell("chmod 500 source/sub; touch -d '2001-02-03 04:05:06 UTC' source/sub/empty source/sub "
                    "source/program source/blocks source/empty")
                  .status,
              0);
  }

 private:
  // Several blocks of a large file, and in them all that is compressed in its own way: text, what looks like
  // base64, what does not become smaller, nothing but zeros, each up to places that are no round numbers.
  static std::string blocks() {
    std::mt19937 random(9);
    std::string text;
    for (std::size_t stretch = 0; stretch < 40; ++stretch) {
      const std::size_t end = text.size() + 1000 + random() % 200'000;
      while (text.size() < end) {
        const auto number = random();
        if (stretch % 4 == 0) text += "line " + std::to_string(number % 1000) + " of a letter\n";
        if (stretch % 4 == 1) text += static_cast<char>('0' + number % 64);
        if (stretch % 4 == 2) text += static_cast<char>(number);
        if (stretch % 4 == 3) text += '\0';
      }
    }
    return text;
  }
};

class ReaderTest : public DittoArchiveTest, public testing::WithParamInterface<const char*> {};

TEST_P(ReaderTest, GivesBackBytesModesLinksAndTimes) {
  makePlainTree();
  ASSERT_EQ(ditto({"-ck", path("source"), path("a.zip")}).status, 0);
  const ToolResult unpacked = shell("mkdir out; " + std::string(GetParam()) + " && " + kReadersAreContent);
  EXPECT_EQ(unpacked.status, 0) << unpacked.output;
  EXPECT_TRUE(contents(path("out"), Times::seconds) == contents(path("source"), Times::seconds));
}

INSTANTIATE_TEST_SUITE_P(Programs, ReaderTest,
                         testing::Values("$DITTO -x -k a.zip out", "unzip -q a.zip -d out",
                                         "bsdtar -xpf a.zip -C out"));

TEST_F(DittoArchiveTest, KeepsEveryNameThatAFileCanHave) {
  // A letter with its accent composed and decomposed: two files. Bytes that are no UTF-8, in a link's target
  // too.
  for (const char* name :
       {"e\xcc\x81", "\xc3\xa9", "\xff\xfe", "two\nlines", "-", " ", "back\\slash", "c:d", "*?[a]"}) {
    makeFolder("source");
    write("source/" + std::string(name), name);
  }
  makeLink("source/to\xfe", "\xff");
  makeLink("source/to\xc3\xa9", "e\xcc\x81");
  ASSERT_EQ(ditto({"-ck", path("source"), path("a.zip")}).status, 0);
  const ToolResult read = shell(kReadersAreContent);
  EXPECT_EQ(read.status, 0) << read.output;
  const ToolResult unpacked = shell("$DITTO -xk a.zip new/out && 7z x -oother a.zip >7z.log");
  EXPECT_EQ(unpacked.status, 0) << unpacked.output;
  EXPECT_EQ(contents(path("new/out"), Times::seconds), contents(path("source"), Times::seconds));
  EXPECT_EQ(contents(path("other"), Times::seconds), contents(path("source"), Times::seconds));
}

TEST_F(DittoArchiveTest, DoesNotDependOnTheNumberOfThreads) {
  makePlainTree();
  const ToolResult result = shell(
      "seq 1 500 | (cd source/-dash; split -l 1 -a 3); $DITTO -ck source a.zip\n"
      "for n in 1 2 7 7; do $DITTO -ck --threads $n source b.zip && cmp a.zip b.zip; done");
  EXPECT_EQ(result.output, "");
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
                    OptionsCase{{"-k", "-Xc", "--threads", "3"}, kContents},
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
                                         Arguments{"-ck", "a"}, Arguments{"-ck", "", "b"},
                                         Arguments{"-ck", "--threads", "x", "a", "b"}));

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
  EXPECT_EQ(ditto({"-ck", "--threads", "8", path("copied"), path("b.zip")}, few).status, 0);
  EXPECT_EQ(namesInArchive(path("a.zip")).size(), 101U);
  EXPECT_TRUE(read("a.zip") == read("b.zip"));
  // Too deep for what removes the scratch folder.
  EXPECT_EQ(shell("rm -rf source unpacked copied").status, 0);
}

TEST_F(DittoArchiveTest, HoldsMoreEntriesThanTheSmallFormCounts) {
  // In memory where there is a folder for that: so many files take their time on a disk.
  const ToolResult result = shell(
      "many=$(mktemp -d /dev/shm/ditto.XXXXXX || mktemp -d ./XXXXXX) 2>&-; trap 'rm -rf \"$many\"' EXIT\n"
      "(cd \"$many\"; seq 1 70000 | xargs touch); \"$DITTO\" -ck \"$many\" a.zip; bsdtar -tf a.zip | wc "
      "-l\n" +
      std::string(kReadersAreContent));
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, "70000\n");
}

}  // namespace
}  // namespace corvane
