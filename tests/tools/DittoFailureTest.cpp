#include "tests/tools/DittoKit.h"

namespace corvane {
namespace {

// In a folder that anybody can reach.
class DittoFailureTest : public DittoKit {
 protected:
  DittoFailureTest() {
    expect(
        "chmod 755 .; mkdir source out; chmod 777 out; echo x >source/file\n"
        "echo older >out/a.zip; chmod 666 out/a.zip",
        "");
  }
};

struct FailureCase {
  const char *what, *prepare, *start = "", *source = "source", *named = "out/a.zip";
};

class FailedArchiveTest : public DittoFailureTest, public testing::WithParamInterface<FailureCase> {};

TEST_P(FailedArchiveTest, NamesTheCauseAndKeepsTheOlderArchive) {
  // Permissions do not hold the superuser back; the copy can be reached by whoever runs it. One call of the
  // system is made to fail by whoever traces it, which a search for leaks does not bear.
  const std::string tools = R"~(cp "$DITTO" ./ditto; user() { "$@"; }; [ $(id -u) = 0 ] &&
user() { setpriv --reuid=65534 --regid=65534 --clear-groups "$@"; }
failing() { inject=$1:error=$2; shift 2; strace -o trace true || exit 77
ASAN_OPTIONS=detect_leaks=0 strace -f -o trace -e inject=$inject "$@"; }
)~";
  const FailureCase& row = GetParam();
  expect(tools + row.prepare + "\n" + row.start + " ./ditto -ck " + row.source +
             " out/a.zip 2>log; echo $?; grep ^ditto log | cut -d: -f 1,2; cat out/*",
         "1\nditto: " + std::string(row.named) + "\nolder\n");
}

constexpr const char* kCpus = "/sys/devices/system/cpu/online";

INSTANTIATE_TEST_SUITE_P(
    Causes, FailedArchiveTest,
    testing::Values(
        FailureCase{"file", "chmod 0 source/file", "user", "source", "source/file"},
        FailureCase{"folder", "mkdir -m 0 source/z", "user", "source", "source/z"},
        FailureCase{"both", "mkdir -m 0 source/a source/z", "user", "source", "source/a\nditto: source/z"},
        FailureCase{"missing", "", "", "nothing", "nothing"},
        FailureCase{"pipe", "mkfifo source/pipe", "", "source", "source/pipe"},
        FailureCase{"socket", "python3 -c \"import socket; socket.socket(1).bind('source/s')\"", "", "source",
                    "source/s"},
        FailureCase{"device", "mknod source/null c 1 3 || exit 77", "", "source", "source/null"},
        FailureCase{"newline", "mkfifo 'source/a\nb'", "", "source", "source/a?b"},
        // Files of this kind have more bytes than they say: as one that grows while it is read.
        FailureCase{"grown", "", "", "/proc/version", "/proc/version"},
        FailureCase{"shrunk", "test -e /sys/devices/system/cpu/online || exit 77", "", kCpus, kCpus},
        FailureCase{"read", "", "failing pread64 EIO:when=1 -P source/file", "source", "source/file"},
        FailureCase{"rewrite", "head -c 3000000 /dev/zero >source/big", "failing pwrite64 ENOSPC:when=1"},
        FailureCase{"vanished", "", "failing openat ENOENT:when=1 -P file", "source", "source/file"},
        // A sanitizer writes, too.
        FailureCase{"write", "! ldd ditto | grep -q 'lib[a-z]*san' || exit 77",
                    "failing write ENOSPC:when=1"},
        FailureCase{"flush", "", "failing fsync EIO:when=1"},
        FailureCase{"nameFlush", "", "failing fsync EIO:when=2"},
        FailureCase{"rename", "", "failing renameat,renameat2 EACCES:when=1"},
        FailureCase{"limit", "head -c 300000 /dev/urandom >source/big", "prlimit --fsize=100000"}),
    [](const auto& tested) { return tested.param.what; });

TEST_F(DittoFailureTest, ReplacesNoFolder) {
  expect("ditto -ck source out 2>&1; ls -A out", "ditto: out: Is a directory\na.zip\n");
}

TEST_F(DittoFailureTest, LeavesAFullDiskAsItWas) {
  expect(R"~(unshare --mount sh -c 'mount -t tmpfs -o size=1m none out || exit 77
echo older >out/a.zip; head -c 3000000 /dev/urandom >source/big; cp out/a.zip out/b
ditto -ck source out/a.zip && echo archived; ditto source/big out/b && echo copied
ls -A out; cat out/a.zip out/b' 2>&1 || exit 77)~",
         "ditto: out/a.zip: No space left on device\nditto: out/b: No space left on device\n"
         "a.zip\nb\nolder\nolder\n");
}

TEST_F(DittoFailureTest, SavesNoMixtureOfWhatChanges) {
  expect(R"~((while :; do seq $(date +%N | cut -c -5) >source/file; head -c 3000000 /dev/zero >source/big
rm source/big; done) & writer=$!
for i in $(seq 10); do if timeout 20 ditto -ck source a.zip 2>messages; then unzip -tqq a.zip
elif [ $? -ne 1 ] || ! grep -q 'ditto: source' messages; then cat messages; echo failed; fi; done
kill $writer; wait $writer 2>&-; ls -A | grep [.]ditto; true)~",
         "");
}

TEST_F(DittoFailureTest, StaysOnOneFileSystemWhenAsked) {
  expect(R"~(unshare --mount sh -c 'mkdir source/m; mount -t tmpfs none source/m || exit 77
echo there >source/m/f; ditto -ckX source one.zip; ditto -ck source all.zip
ditto -X source copy' 2>&1 || exit 77
for archive in one all; do echo $(bsdtar -tf $archive.zip); done; ls -A copy/m)~",
         "file m/\nfile m/ m/f\n");
}

// What a shell starts in the background does not hear SIGINT otherwise.
TEST_F(DittoFailureTest, EndsAtOnceOnASignalAndLeavesNothing) {
  expect(R"~(truncate -s 200G source/huge
while read signal command; do
env --default-signal ditto $command out/a.zip & pid=$!
timeout 20 sh -c 'until [ $(ls -A out | wc -l) = 2 ]; do sleep 0.01; done'
kill -$signal $pid; wait $pid; echo $? $(ls -A out; cat out/a.zip); done 2>log <<END
TERM -ck source
INT -ck source
HUP -ck source
TERM source/huge
END
)~",
         "143 a.zip older\n130 a.zip older\n129 a.zip older\n143 a.zip older\n");
}

using DittoHazardsTest = DittoKit;

// Reading takes a while: one file is large, the call that reads the other is held up. All the time another
// program writes the same number of bytes to the file at hand, until the command has ended.
TEST_F(DittoHazardsTest, NoticesThatAFileIsRewrittenInPlace) {
  const std::string large = "ditto: b/file: changed while it was read\n1\n";
  expect(R"~(mkdir a b; echo small >a/file; truncate -s 100M b/file
rewriting() { (while :; do printf x 1<>$1/file; done) & writer=$!
shift; ASAN_OPTIONS=detect_leaks=0 "$@" 2>&1; echo $?; kill $writer; wait $writer 2>&-; }
rewriting b ditto -ck b b.zip; rewriting b ditto b/file b.copy; strace -o trace true 2>&- || exit 77
rewriting a strace -f -o trace -P "$PWD/a/file" -e inject=pread64:delay_exit=300000 ditto -ck a a.zip; ls)~",
         large + large + "ditto: a/file: changed while it was read\n1\na\nb\ntrace\n");
}

TEST_F(DittoHazardsTest, ReplacesNothingButFilesAndLinks) {
  expect(R"~(echo old >file; mkfifo pipe; ln -s file link; mkdir out; mkfifo out/file
for operands in '-ck file pipe' 'file pipe' '-ck file file' '-ck file link' '-xk link out'; do
ditto $operands 2>&1; done; stat -c %F link pipe out/file; cat file)~",
         "ditto: pipe: File exists\nditto: pipe: File exists\nditto: file: is the source itself\n"
         "ditto: file: File exists\nregular file\nfifo\nfifo\nold\n");
}

// Where there was none before, the new one stays; but after a power cut it may be gone.
TEST_F(DittoHazardsTest, TellsThatTheNameCouldNotBeFlushed) {
  expect(R"~(echo x >file; strace -o trace true 2>&- || exit 77
for error in EIO EINVAL; do ASAN_OPTIONS=detect_leaks=0 strace -f -o trace -e inject=fsync:error=$error:when=2 \
ditto -ck file a.zip 2>&1; done)~",
         "ditto: a.zip: Input/output error\n");
}

TEST_F(DittoHazardsTest, TimesThatNoArchiveHoldsBecomeTheNearest) {
  expect(R"~(export TZ=UTC0; mkdir source; cd source; touch -d @-5 1969; touch -d @5 1970
touch -d '2050-01-02 03:04:06' 2050; cd ..
ditto -ck source a.zip; ditto -xk a.zip out; cd out; stat -c '%n %.19y' *)~",
         "1969 1980-01-01 00:00:00\n1970 1970-01-01 00:00:05\n2050 2050-01-02 03:04:06\n");
}

}  // namespace
}  // namespace corvane
