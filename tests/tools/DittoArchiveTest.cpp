#include "tests/tools/DittoKit.h"

namespace corvane {
namespace {

using DittoArchiveTest = DittoKit;

// Names that every unpacking program can give back. Then several blocks of a large file, and in them all that
// is compressed in its own way: text, what looks like base64, what does not become smaller, nothing but
// zeros, each up to places that are no round numbers. Times last: what is put into a folder changes its own.
const std::string kMakeTree = R"~(mkdir -p source/sub/empty source/-dash; cd source
echo in a folder >-dash/-file; echo accents >"été 'and' \"so\""; echo long name >$(printf %0255d 0)
ln -s sub/empty link; ln -s loop loop; ln -s '/nowhere/at all' dangling; >empty; echo '#!/bin/sh' >program
python3 -c "import random; open('noise', 'wb').write(random.Random(9).randbytes(97531))"
for n in 7 60001 300 20002 9 40005 1000; do
seq $n; base64 -w0 noise | head -c 10$n; cat noise; head -c 10$n /dev/zero; done >blocks; rm noise
chmod 640 blocks; chmod 755 program; chmod 500 sub
touch -d '2001-02-03 04:05:06 UTC' sub/empty sub program blocks empty; cd ..
)~";

TEST_F(DittoArchiveTest, EveryReaderGivesBackBytesModesLinksAndTimes) {
  EXPECT_EQ(shell(kMakeTree + R"~(ditto -ck source a.zip; readable; mkdir out1 out2 out3
ditto -x -k a.zip out1; same source out1 %Y
unzip -q a.zip -d out2; same source out2 %Y
bsdtar -xpf a.zip -C out3; same source out3 %Y)~"),
            "");
}

// A letter with its accent composed and decomposed: two files. Bytes that are no UTF-8, in a link's target
// too.
TEST_F(DittoArchiveTest, KeepsEveryNameThatAFileCanHave) {
  for (const char* name :
       {"e\xcc\x81", "\xc3\xa9", "\xff\xfe", "two\nlines", "-", " ", "back\\slash", "c:d", "*?[a]"}) {
    write("source/" + std::string(name), name);
  }
  std::filesystem::create_symlink("\xff", path("source/to\xfe"));
  std::filesystem::create_symlink("e\xcc\x81", path("source/to\xc3\xa9"));
  EXPECT_EQ(shell("ditto -ck source a.zip; readable; ditto -xk a.zip new/out; 7z x -oother a.zip >7z.log\n"
                  "same source new/out %Y; same source other %Y"),
            "");
}

TEST_F(DittoArchiveTest, DoesNotDependOnTheNumberOfThreads) {
  EXPECT_EQ(
      shell(kMakeTree + "seq 1 500 | (cd source/-dash; split -l 1 -a 3); ditto -ck source a.zip\n"
                        "for n in 1 2 7 7; do ditto -ck --threads $n source b.zip; cmp a.zip b.zip; done"),
      "");
}

// Bit 11 of the flags, in the second byte of the field.
TEST_F(DittoArchiveTest, CallsNamesUtf8WhenTheyAreAndNeedIt) {
  EXPECT_EQ(shell(R"~(for n in plain é $(printf '\303'); do
>$n; ditto -ck $n a.zip; od -An -tx1 -j7 -N1 a.zip; done)~"),
            " 00\n 08\n 00\n");
}

TEST_F(DittoArchiveTest, OptionsAreUnderstoodInEveryGrouping) {
  EXPECT_EQ(shell(R"~(mkdir -p source/sub; >source/file
for options in -ck -ckX '-c -k -X --rsrc' '-k -Xc --threads 3' '-V -ckv --sequesterRsrc --norsrc --extattr
  --noextattr --acl --noacl --qtn --noqtn --' '-ck --keepParent'; do
ditto $options source/ a.zip 2>log || cat log; echo $(bsdtar -tf a.zip); done
for wrong in '' /etc/passwd 'a b c' '-c a b' '-x a b' '-k a b' '-cxk a b' '-z a b' '--other a b' '-ck a' \
  '-ck "" b' '-ck --threads x a b'; do
usage=$(eval "ditto $wrong" 2>&1)
case $?$usage in 1'usage: ditto '*) ;; *) echo "$wrong: $usage"; esac; done)~"),
            "file sub/\nfile sub/\nfile sub/\nfile sub/\nfile sub/\nsource/ source/file source/sub/\n");
}

TEST_F(DittoArchiveTest, LeavesItselfOut) {
  EXPECT_EQ(shell("mkdir source; >source/file\n"
                  "for i in 1 2; do ditto -ck source source/own.zip; bsdtar -tf source/own.zip; done"),
            "file\nfile\n");
}

// Too deep also for what removes the scratch folder.
TEST_F(DittoArchiveTest, GoesDeeperThanPathsAndDescriptorsReach) {
  EXPECT_EQ(shell(R"~(n=$(printf %0200d 0); mkdir source; (cd source
i=0; while [ $i -lt 100 ]; do mkdir $n; cd -P ./$n; i=$((i+1)); done; echo leaf >leaf)
ulimit -n 64; ditto -ck source a.zip && ditto -xk a.zip unpacked && ditto unpacked copied &&
ditto -ck --threads 8 copied b.zip; cmp a.zip b.zip; bsdtar -tf a.zip | wc -l
rm -rf source unpacked copied)~"),
            "101\n");
}

// In memory where there is a folder for that: so many files take their time on a disk.
TEST_F(DittoArchiveTest, HoldsMoreEntriesThanTheSmallFormCounts) {
  EXPECT_EQ(
      shell(R"~(many=$(mktemp -d /dev/shm/ditto.XXXXXX || mktemp -d ./XXXXXX) 2>&-; trap 'rm -rf "$many"' EXIT
(cd "$many"; seq 1 70000 | xargs touch); ditto -ck "$many" a.zip; bsdtar -tf a.zip | wc -l; readable)~"),
      "70000\n");
}

}  // namespace
}  // namespace corvane
