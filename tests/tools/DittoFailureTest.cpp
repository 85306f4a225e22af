#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <functional>

#include "process/ChildProcess.h"
#include "process/Spawn.h"
#include "tests/support/WaitFor.h"
#include "tests/tools/DittoKit.h"

namespace corvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr int kSkipped = 77;

struct FailureCase {
  const char* what;
  const char* prepare;  // done in the scratch folder, which holds source/file and out/a.zip
  const char* command;
  const char* named;
};

class DittoFailureTest : public testing::Test, protected DittoKit {
 protected:
  void SetUp() override {
    ASSERT_EQ(::chmod(path("").c_str(), 0755), 0);
    makeFolder("source");
    makeFolder("out", 0777);
    write("source/file", "x");
    write("out/a.zip", "an older archive", 0666);
  }

  void expectOlderArchiveOnly() const {
    EXPECT_THAT(namesIn(path("out")), ElementsAre("a.zip"));
    EXPECT_EQ(read("out/a.zip"), "an older archive");
  }
};

class FailedArchiveTest : public DittoFailureTest, public testing::WithParamInterface<FailureCase> {};

TEST_P(FailedArchiveTest, NamesTheCauseAndKeepsTheOlderArchive) {
  // Permissions do not hold the superuser back; the copy can be reached by whoever runs it. One call of the
  // system is made to fail by whoever traces it, which a search for leaks does not bear.
  const std::string run =
      "cp \"$DITTO\" ./ditto; user=; [ $(id -u) = 0 ] && user='setpriv --reuid=65534 --regid=65534 "
      "--clear-groups'\nfailing() { inject=$1:error=$2:when=1; shift 2; strace -o trace true || exit 77\n"
      "ASAN_OPTIONS=detect_leaks=0 strace -f -o trace -e inject=$inject \"$@\"; }\n";
  const ToolResult result = shell(run + GetParam().prepare + "\n" + GetParam().command);
  if (result.status == kSkipped) GTEST_SKIP() << result.output;
  EXPECT_EQ(result.status, 1) << result.output;
  EXPECT_THAT(result.output, HasSubstr("ditto: " + std::string(GetParam().named) + ": "));
  expectOlderArchiveOnly();
}

INSTANTIATE_TEST_SUITE_P(
    Causes, FailedArchiveTest,
    testing::Values(
        FailureCase{"file", "chmod 0 source/file", "$user ./ditto -ck source out/a.zip", "source/file"},
        FailureCase{"folder", "mkdir -m 0 source/sub", "$user ./ditto -ck source out/a.zip", "source/sub"},
        FailureCase{"secondOfTwo", "mkdir -m 0 source/a source/z", "$user ./ditto -ck source out/a.zip",
                    "source/z"},
        FailureCase{"missing", "", "./ditto -ck nothing out/a.zip", "nothing"},
        FailureCase{"pipe", "mkfifo source/pipe", "./ditto -ck source out/a.zip", "source/pipe"},
        FailureCase{"socket", "python3 -c \"import socket; socket.socket(1).bind('source/s')\"",
                    "./ditto -ck source out/a.zip", "source/s"},
        FailureCase{"device", "mknod source/null c 1 3 || exit 77", "./ditto -ck source out/a.zip",
                    "source/null"},
        FailureCase{"newline", "mkfifo 'source/a\nb'", "./ditto -ck source out/a.zip", "source/a?b"},
        // Files of this kind have more bytes than they say: as one that grows while it is read.
        FailureCase{"grown", "", "./ditto -ck /proc/version out/a.zip", "/proc/version"},
        FailureCase{"shrunk", "test -e /sys/devices/system/cpu/online || exit 77",
                    "./ditto -ck /sys/devices/system/cpu/online out/a.zip", "/sys/devices/system/cpu/online"},
        FailureCase{"read", "", "failing pread64 EIO -P source/file ./ditto -ck source out/a.zip",
                    "source/file"},
        FailureCase{"rewrite", "head -c 3000000 /dev/zero > source/big",
                    "failing pwrite64 ENOSPC ./ditto -ck source out/a.zip", "out/a.zip"},
        FailureCase{"flush", "", "failing fsync EIO ./ditto -ck source out/a.zip", "out/a.zip"},
        FailureCase{"rename", "", "failing renameat EACCES ./ditto -ck source out/a.zip", "out/a.zip"},
        FailureCase{"limit", "head -c 300000 /dev/urandom > source/big",
                    "prlimit --fsize=100000 ./ditto -ck source out/a.zip", "out/a.zip"},
        FailureCase{"isFolder", "mkdir source/sub", "./ditto -ck source source/sub", "source/sub"}),
    [](const auto& tested) { return tested.param.what; });

TEST_F(DittoFailureTest, LeavesAFullDiskAsItWas) {
  const ToolResult result = shell(
      "unshare --mount sh -c 'mount -t tmpfs -o size=1m none out || exit 77\n"
      "echo older > out/a.zip; head -c 3000000 /dev/urandom > source/big; cp out/a.zip out/b\n"
      "\"$DITTO\" -ck source out/a.zip && echo archived; \"$DITTO\" source/big out/b && echo copied\n"
      "ls -A out; cat out/a.zip out/b' 2>&1 || exit 77");
  if (result.status == kSkipped) GTEST_SKIP() << result.output;
  EXPECT_EQ(result.output,
            "ditto: out/a.zip: No space left on device\nditto: out/b: No space left on device\n"
            "a.zip\nb\nolder\nolder\n");
}

TEST_F(DittoFailureTest, SavesNoMixtureOfWhatChanges) {
  const ToolResult result = shell(
      "(while :; do seq $(date +%N | cut -c -5) >source/file; head -c 3000000 /dev/zero >source/big\n"
      "rm source/big; done) & writer=$!\n"
      "for i in $(seq 10); do if timeout 20 \"$DITTO\" -ck source a.zip 2>messages; then unzip -tqq a.zip\n"
      "elif [ $? -ne 1 ] || ! grep -q 'ditto: source' messages; then cat messages; echo failed; fi; done\n"
      "kill $writer; wait $writer 2>&-; ls -A | grep [.]ditto");
  EXPECT_EQ(result.output, "");
}

TEST_F(DittoFailureTest, StaysOnOneFileSystemWhenAsked) {
  const ToolResult result = shell(
      "unshare --mount sh -c 'mkdir source/m; mount -t tmpfs none source/m || exit 77\n"
      "echo there > source/m/f; \"$DITTO\" -ckX source one.zip; \"$DITTO\" -ck source all.zip\n"
      "\"$DITTO\" -X source copy' 2>&1 || exit 77");
  if (result.status == kSkipped) GTEST_SKIP() << result.output;
  EXPECT_THAT(namesInArchive(path("one.zip")), ElementsAre("file", "m/"));
  EXPECT_THAT(namesInArchive(path("all.zip")), ElementsAre("file", "m/", "m/f"));
  EXPECT_THAT(namesIn(path("copy/m")), ElementsAre());
}

struct SignalCase {
  int signal;
  bool archives;
};

class SignalTest : public DittoFailureTest, public testing::WithParamInterface<SignalCase> {};

TEST_P(SignalTest, EndsAtOnceAndLeavesNothing) {
  write("source/huge", "");
  ASSERT_EQ(::truncate(path("source/huge").c_str(), 200LL << 30), 0);
  LaunchCommand command{DITTO_PROGRAM, {"ditto"}, currentEnvironment()};
  if (GetParam().archives) command.arguments.emplace_back("-ck");
  command.arguments.insert(command.arguments.end(),
                           {path(GetParam().archives ? "source" : "source/huge"), path("out/a.zip")});
  const Pipe pipe;
  const Spawned spawned = spawn(command, pipe.writeEnd);
  ASSERT_GT(spawned.pid, 0) << spawned.problem;
  ChildProcess child(spawned.pid);
  ASSERT_TRUE(waitFor([&] { return namesIn(path("out")).size() == 2; }, std::chrono::seconds(20)));
  ASSERT_EQ(::kill(spawned.pid, GetParam().signal), 0);
  EXPECT_EQ(child.wait(), 128 + GetParam().signal);
  expectOlderArchiveOnly();
}

INSTANTIATE_TEST_SUITE_P(Signals, SignalTest,
                         testing::Values(SignalCase{SIGTERM, true}, SignalCase{SIGINT, true},
                                         SignalCase{SIGHUP, true}, SignalCase{SIGTERM, false}));

}  // namespace
}  // namespace corvane
