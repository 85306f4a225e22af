#include "tests/tools/DittoKit.h"

namespace corvane {
namespace {

using DittoHazardsTest = DittoKit;

// Reading takes a while: one file is large, the call that reads the other is held up. All the time another
// program writes the same number of bytes to the file at hand, until the command has ended.
TEST_F(DittoHazardsTest, NoticesThatAFileIsRewrittenInPlace) {
  const std::string result = shell(R"~(mkdir a b; echo small >a/file; truncate -s 100M b/file
rewriting() { (while :; do printf x 1<>$1/file; done) & writer=$!
shift; ASAN_OPTIONS=detect_leaks=0 "$@" 2>&1; echo $?; kill $writer; wait $writer 2>&-; }
rewriting b ditto -ck b b.zip; rewriting b ditto b/file b.copy; strace -o trace true 2>&- || exit 77
rewriting a strace -f -o trace -P "$PWD/a/file" -e inject=pread64:delay_exit=300000 ditto -ck a a.zip; ls)~");
  if (result.ends_with(kSkipped)) GTEST_SKIP() << result;
  const std::string kLarge = "ditto: b/file: changed while it was read\n1\n";
  const std::string kSmall = "ditto: a/file: changed while it was read\n1\na\nb\ntrace\n";
  EXPECT_EQ(result, kLarge + kLarge + kSmall);
}

TEST_F(DittoHazardsTest, ReplacesNothingButFilesAndLinks) {
  EXPECT_EQ(shell(R"~(echo old >file; mkfifo pipe; ln -s file link; mkdir out; mkfifo out/file
for operands in '-ck file pipe' 'file pipe' '-ck file file' '-ck file link' '-xk link out'; do
ditto $operands 2>&1; done; stat -c %F link pipe out/file; cat file)~"),
            "ditto: pipe: File exists\nditto: pipe: File exists\nditto: file: is the source itself\n"
            "ditto: file: File exists\nregular file\nfifo\nfifo\nold\n");
}

// The name, the second that is flushed, stands already; but after a power cut it may not.
TEST_F(DittoHazardsTest, TellsThatTheNameCouldNotBeFlushed) {
  const std::string result = shell(R"~(echo x >file; strace -o trace true 2>&- || exit 77
for error in EIO EINVAL; do ASAN_OPTIONS=detect_leaks=0 strace -f -o trace -e inject=fsync:error=$error:when=2 \
ditto -ck file a.zip 2>&1; done)~");
  if (result.ends_with(kSkipped)) GTEST_SKIP() << result;
  EXPECT_EQ(result, "ditto: a.zip: Input/output error\n");
}

TEST_F(DittoHazardsTest, TimesThatNoArchiveHoldsBecomeTheNearest) {
  EXPECT_EQ(shell(R"~(export TZ=UTC0; mkdir source; cd source; touch -d @-5 1969; touch -d @5 1970
touch -d '2050-01-02 03:04:06' 2050; cd ..
ditto -ck source a.zip; ditto -xk a.zip out; cd out; stat -c '%n %.19y' *)~"),
            "1969 1980-01-01 00:00:00\n1970 1970-01-01 00:00:05\n2050 2050-01-02 03:04:06\n");
}

}  // namespace
}  // namespace corvane
