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
  expect(kMakeTree + R"~(ditto -ck source a.zip; readable; mkdir out1 out2 out3
ditto -x -k a.zip out1; same source out1 %Y
unzip -q a.zip -d out2; same source out2 %Y
bsdtar -xpf a.zip -C out3; same source out3 %Y)~",
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
  expect(
      "ditto -ck source a.zip; readable; ditto -xk a.zip new/out; 7z x -oother a.zip >7z.log\n"
      "same source new/out %Y; same source other %Y",
      "");
}

TEST_F(DittoArchiveTest, DoesNotDependOnTheNumberOfThreads) {
  expect(kMakeTree +
             "seq 1 500 | (cd source/-dash; split -l 1 -a 3); ditto -ck source a.zip\n"
             "for n in 1 2 7 7; do ditto -ck --threads $n source b.zip; cmp a.zip b.zip; done",
         "");
}

// Bit 11 of the flags, in the second byte of the field.
TEST_F(DittoArchiveTest, CallsNamesUtf8WhenTheyAreAndNeedIt) {
  expect(R"~(for n in plain é $(printf '\303'); do
>$n; ditto -ck $n a.zip; od -An -tx1 -j7 -N1 a.zip; done)~",
         " 00\n 08\n 00\n");
}

TEST_F(DittoArchiveTest, OptionsAreUnderstoodInEveryGrouping) {
  expect(R"~(mkdir -p source/sub; >source/file
for options in -ck -ckX '-c -k -X --rsrc' '-k -Xc --threads 3' '-V -ckv --sequesterRsrc --norsrc --extattr
  --noextattr --acl --noacl --qtn --noqtn --' '-ck --keepParent'; do
ditto $options source/ a.zip 2>log || cat log; echo $(bsdtar -tf a.zip); done
for wrong in '' /etc/passwd 'a b c' '-c a b' '-x a b' '-k a b' '-cxk a b' '-z a b' '--other a b' '-ck a' \
  '-ck "" b' '-ck --threads x a b'; do
usage=$(eval "ditto $wrong" 2>&1)
case $?$usage in 1'usage: ditto '*) ;; *) echo "$wrong: $usage"; esac; done)~",
         "file sub/\nfile sub/\nfile sub/\nfile sub/\nfile sub/\nsource/ source/file source/sub/\n");
}

TEST_F(DittoArchiveTest, LeavesItselfOut) {
  expect(
      "mkdir source; >source/file\n"
      "for i in 1 2; do ditto -ck source source/own.zip; bsdtar -tf source/own.zip; done",
      "file\nfile\n");
}

// Too deep also for what removes the scratch folder.
TEST_F(DittoArchiveTest, GoesDeeperThanPathsAndDescriptorsReach) {
  expect(R"~(n=$(printf %0200d 0); mkdir source; (cd source
i=0; while [ $i -lt 100 ]; do mkdir $n; cd -P ./$n; i=$((i+1)); done; echo leaf >leaf)
ulimit -n 64; ditto -ck source a.zip && ditto -xk a.zip unpacked && ditto unpacked copied &&
ditto -ck --threads 8 copied b.zip; cmp a.zip b.zip; bsdtar -tf a.zip | wc -l
rm -rf source unpacked copied)~",
         "101\n");
}

// In memory where there is a folder for that: so many files take their time on a disk.
TEST_F(DittoArchiveTest, HoldsMoreEntriesThanTheSmallFormCounts) {
  expect(R"~(many=$(mktemp -d /dev/shm/ditto.XXXXXX || mktemp -d ./XXXXXX) 2>&-; trap 'rm -rf "$many"' EXIT
(cd "$many"; seq 1 70000 | xargs touch); ditto -ck "$many" a.zip; bsdtar -tf a.zip | wc -l; readable)~",
         "70000\n");
}

// A minute of work: only where all is to be tested.
TEST_F(DittoArchiveTest, HoldsMoreThanFourGigabytes) {
  expect(
      R"~([ "$CORVANE_SWEEP" = long ] || exit 77; mkdir source; truncate -s 4300M source/a; echo last >source/b
ditto -ck source a.zip; unzip -tqq a.zip; 7z t a.zip >7z || cat 7z; bsdtar -xOf - b <a.zip; unzip -p a.zip a | wc -c
python3 -c "import zipfile; print(zipfile.ZipFile('a.zip').read('b'))")~",
      "last\n4508876800\nb'last\\n'\n");
}

using DittoUnpackTest = DittoKit;

TEST_F(DittoUnpackTest, ReadsTheLargeForm) {
  expect("echo small >file; zip -q -fz a.zip file; ditto -xk a.zip out; cat out/file", "small\n");
}

// `planted NAME KIND CONTENT ...` makes a.zip; a kind is the first digits of a mode.
const std::string kPlanted = R"~(mkdir out outside; planted() { python3 -W ignore -c "
import sys, zipfile
with zipfile.ZipFile('a.zip', 'w') as archive:
    for i in range(1, len(sys.argv), 3):
        entry = zipfile.ZipInfo(sys.argv[i])
        entry.create_system, entry.external_attr = 3, int(sys.argv[i + 1] + '6755', 8) << 16
        archive.writestr(entry, sys.argv[i + 2])" "$@"; }
)~";

TEST_F(DittoUnpackTest, WritesNothingOutside) {
  expect(kPlanted + R"~(ln -s ../outside out/planted; ln -s ../outside/file out/through
planted ../outside/a 10 x "$PWD/outside/b" 10 x sub/../../outside/c 10 x .. 10 x link 12 ../outside \
  link/d 10 x link/ 4 '' planted/e 10 x planted/f 12 x through 10 x ./good 10 x
ditto -x -k a.zip out 2>log && echo succeeded; sed "s|$PWD||" log | cut -d: -f 2; ls -A . out outside
stat -c '%A %s' out/through)~",
         " ../outside/a\n /outside/b\n sub/../../outside/c\n ..\n link/d\n link/\n planted/e\n planted/f\n"
         ".:\na.zip\nlog\nout\noutside\n\nout:\ngood\nlink\nplanted\nthrough\n\noutside:\n"
         // Nor does what was unpacked act in its owner's name.
         "-rwxr-xr-x 1\n");
}

TEST_F(DittoUnpackTest, FoldersWithoutAnEntryAreAsTheUserMakesThem) {
  expect(kPlanted +
             "planted implied/folder/file 10 x named/ 4 '' named/file 10 x\n"
             "umask 027; ditto -xk a.zip out; stat -c %a out/implied/folder out/named",
         "750\n755\n");
}

// Without compression the bytes of the file stand as they are, after a header of some 65.
TEST_F(DittoUnpackTest, DamageIsReportedAndReplacesNothing) {
  expect(R"~(mkdir out; printf 'a sentence that is to stay whole' >file; echo older >out/file
while read damage; do
rm -rf a.zip; bsdtar --format zip --options zip:compression=store -cf a.zip file
eval "$damage"; ditto -xk a.zip out 2>log
echo $? $(head -n 1 log | cut -d: -f 1,2; ls -A out; cat out/file); done <<END
sed -i s/sentence/sentense/ a.zip
truncate -s 80 a.zip
truncate -s 0 a.zip
cp /bin/sh a.zip
rm a.zip
rm a.zip; mkdir a.zip
END
)~",
         "1 ditto: file file older\n1 ditto: file file older\n1 ditto: a.zip file older\n"
         "1 ditto: a.zip file older\n1 ditto: a.zip file older\n1 ditto: a.zip file older\n");
}

using DittoCopyTest = DittoKit;

TEST_F(DittoCopyTest, MergesAFolderIntoAnother) {
  expect(R"~(mkdir -p source/sub there/sub; cd source; echo new >sub/file; echo '#!' >program
ln -s sub/file link; chmod 604 sub/file; chmod 755 program; chmod 550 sub
touch -d '2001-02-03 04:05:07.123456789' sub/file sub; cd ../there
echo old and longer >sub/file; echo stays >sub/other; echo not through the link >target; ln -s target program
cd ..; ditto source deep/new; same source deep/new %.9Y
ditto source there; cat there/sub/other there/target; rm there/sub/other there/target; same source there)~",
         "stays\nnot through the link\n");
}

TEST_F(DittoCopyTest, AFileGoesToAPathOrIntoAFolder) {
  expect(R"~(echo new >file; chmod 444 file; ln -s file alias; look() { stat -c '%f %.9Y' $1; cat $1; }
while read from to made; do
rm -rf folder; mkdir folder; echo old >folder/old
ditto -X $from $to; [ "$(look $made)" = "$(look file)" ] || echo $from $to; done <<END
file folder/new folder/new
file folder/old folder/old
file folder folder/file
file folder/ folder/file
alias folder/new folder/new
alias folder folder/alias
END
)~",
         "");
}

TEST_F(DittoCopyTest, ExtendedAttributesAreKeptUnlessToldOtherwise) {
  expect(R"~(mkdir source; >source/file; chmod 444 source/file
python3 -c "import os; os.setxattr('source/file', 'user.origin', b'here')" 2>&- || exit 77
for option in --rsrc --norsrc --noextattr; do ditto $option source copy$option
python3 -c "import os; print('user.origin' in os.listxattr('copy$option/file'))"; done)~",
         "True\nFalse\nFalse\n");
}

TEST_F(DittoCopyTest, DoesNotCopyADestinationIntoItself) {
  expect("mkdir -p source/a; >source/a/file; timeout 20 ditto source source/b; cd source; find b | sort",
         "b\nb/a\nb/a/file\n");
}

TEST_F(DittoCopyTest, NamesWhatItCannotCopyAndCopiesTheRest) {
  expect(R"~(mkdir -p source/sub source/taken outside there/z2; >source/sub/file; >source/z; >source/z2
ln -s ../outside there/sub; >there/taken; mkfifo source/pipe
ditto source there 2>log && echo succeeded; cut -d: -f 1,2 log | sort; ls -A there outside)~",
         "ditto: source/pipe\nditto: there/sub\nditto: there/taken\nditto: there/z2\n"
         "outside:\n\nthere:\nsub\ntaken\nz\nz2\n");
}

}  // namespace
}  // namespace corvane
