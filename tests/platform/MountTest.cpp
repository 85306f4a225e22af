// How server volumes are mounted here, short of a server: what the helpers are told, and what they may do.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>

#include "platform/mount/Helper.h"
#include "platform/mount/MountFolder.h"
#include "platform/mount/MountPlan.h"
#include "platform/mount/ServerMount.h"
#include "platform/mount/VolumeProbe.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/SilentVolume.h"
#include "tests/support/WaitFor.h"

namespace corvane {
namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kSecret = "-o \"a,b\"; $HOME @:/%";
const std::string kSecretLine = "-o \"a,b\"; $HOME @:/%\n";

struct PlanCase {
  const char* protocol;
  const char* server;
  const char* path;
  const char* user;
  const char* command;  // its end; null when refused
  std::string input;
};

ServerVolume volumeOf(const PlanCase& row) {
  return {.url = "URL",
          .protocol = row.protocol,
          .server = row.server,
          .name = row.path,
          .user = row.user,
          .password = kSecret};
}

TEST(MountPlanTest, TellsTheHelperWhatIsMeantAndNothingElse) {
  const PlanCase rows[] = {
      {"sftp", "files.local", "Backup Disk", "anna",
       "|-o|NumberOfPasswordPrompts=1|anna@files.local:/Backup Disk|/V", kSecretLine},
      {"SSH", "10.0.0.7:2222", "a/b", "a@b.c", "|-p|2222|a@b.c@10.0.0.7:/a/b|/V", kSecretLine},
      {"ssh", "::1", "x:y", "", "|[::1]:/x:y|/V", kSecretLine},
      {"sftp", "[fe80::7]:22", "-o x", "anna", "|-p|22|anna@[fe80::7]:/-o x|/V", kSecretLine},
      {"http", "h:80", "B\u00E9 d", "a,b@c/d", "mount.davfs|-o|conf=|http://h:80/B\u00E9 d|/V",
       "a,b@c/d\n" + kSecretLine},
      {"davs", "[::1]:8443", "B", "", "mount.davfs|-o|conf=|https://[::1]:8443/B|/V", "\n" + kSecretLine},
      {"smb", "nas", "Share", "anna", "mount.cifs|//nas/Share|/V|-o|user=anna", kSecretLine},
      {"cifs", "nas:4455", "Share/sub", "", "mount.cifs|//nas/Share/sub|/V|-o|guest,port=4455", kSecretLine},
      {"nfs", "::1", "export", "anna", "mount.nfs|[::1]:/export|/V|-o|soft,timeo=100,retrans=2,retry=0", ""}};
  for (const auto& row : rows) {
    MountOutcome refusal;
    const auto plan = mountPlanFor(volumeOf(row), "/V", refusal);
    ASSERT_TRUE(plan) << row.server << refusal.problem;
    std::string command = plan->helper;
    for (const auto& argument : plan->arguments) command += "|" + argument;
    EXPECT_THAT(command, testing::EndsWith(row.command));
    EXPECT_THAT(command + plan->settings, Not(HasSubstr("a,b\"")));
    EXPECT_EQ(plan->input, row.input) << row.protocol;
  }
}

TEST(MountPlanTest, RefusesWhatCouldBeReadAsSomethingElse) {
  const PlanCase rows[] = {
      {"afp", "h", "B", "u"},      {"", "h", "B", "u"},           {"sftp -o", "h", "B", "u"},
      {"sftp", "", "B", "u"},      {"sftp", "-oProxy", "B", "u"}, {"sftp", "h/x", "B", "u"},
      {"sftp", "h:x", "B", "u"},   {"sftp", "h:0", "B", "u"},     {"sftp", "h:65536", "B", "u"},
      {"http", "h:1:2", "B", "u"}, {"sftp", "u@h", "B", "u"},     {"smb", "h,x", "B", "u"},
      {"sftp", "h\nx", "B", "u"},  {"http", "h x", "B", "u"},     {"sftp", "[h]", "B", "u"},
      {"sftp", "h", "", "u"},      {"sftp", "h", "..", "u"},      {"sftp", "h", "B/../../etc", "u"},
      {"nfs", "h", "/B", "u"},     {"sftp", "h", "B/", "u"},      {"sftp", "h", "a//b", "u"},
      {"sftp", "h", "a\nb", "u"},  {"http", "h", "B?x", "u"},     {"http", "h", "B#x", "u"},
      {"smb", "h", "B,ro", "u"},   {"smb", "h", "..\\B", "u"},    {"sftp", "h", "B", "-oProxy=x"},
      {"sftp", "h", "B", "u:x"},   {"sftp", "h", "B", "u/x"},     {"sftp", "h", "B", "u,x"},
      {"sftp", "h", "B", "u\nx"},  {"smb", "h", "B", "u,uid=0"},  {"smb", "h", "B", "u%x"},
      {"http", "h", "B", "u:x"},   {"http", "h", "B", "u\nx"}};
  for (const auto& row : rows) {
    MountOutcome refusal;
    EXPECT_FALSE(mountPlanFor(volumeOf(row), "/V", refusal))
        << row.server << " " << row.path << " " << row.user;
    EXPECT_NE(refusal.error, 0);
    EXPECT_THAT(refusal.problem, HasSubstr("cannot mount URL: "));
  }
  ServerVolume volume = volumeOf({"sftp", "h", "B", "u"});
  volume.password = "a\nb";
  MountOutcome refusal;
  EXPECT_FALSE(mountPlanFor(volume, "/V", refusal));
}

class HelperTest : public testing::Test {
 protected:
  HelperTest() { ::setenv("PATH", (":.:" + home.path() + ":" + path_).c_str(), 1); }
  ~HelperTest() override { ::setenv("PATH", path_.c_str(), 1); }

  MountOutcome run(const std::string& script, milliseconds limit = std::chrono::seconds(20)) {
    home.writeScript("mount.odd", script);
    return runHelper({.helper = "mount.odd",
                      .arguments = {kSettingsFile, "$HOME; x"},
                      .input = "anna\ns3cret\n",
                      .settings = "ask 0\n",
                      .failure = "gave up"},
                     limit);
  }

  ScratchFolder home;

 private:
  const std::string path_ = std::getenv("PATH");
};

TEST_F(HelperTest, GetsItsArgumentsItsInputAndItsSettings) {
  const std::string out = home.path("out");
  EXPECT_EQ(
      run("f=${1#conf=}; { stat -c %a $f; cat $f; echo \"$2\"; cat; } >" + out + "; echo $f >" + out + "2")
          .problem,
      "");
  EXPECT_EQ(home.read("out"), "600\nask 0\n$HOME; x\nanna\ns3cret\n");
  std::string settings = home.read("out2");
  settings.pop_back();
  EXPECT_NE(::access(settings.c_str(), F_OK), 0);
}

TEST_F(HelperTest, FailuresNameTheCauseAndNotThePassword) {
  const auto failed = run("echo no s3cret for anna; exit 3");
  EXPECT_EQ(failed.error, EIO);
  EXPECT_EQ(failed.problem, "mount.odd failed with status 3: no ... for anna ");
  EXPECT_EQ(run("echo gave up").error, EIO);
  EXPECT_EQ(runHelper({.helper = "mount.no-such"}, milliseconds(1000)).error, ENOENT);
}

TEST_F(HelperTest, IsEndedWithAllThatItStartedWhenItTakesTooLong) {
  const auto late = run("sleep 300 & echo $! >" + home.path("pid") + "; wait", milliseconds(500));
  EXPECT_EQ(late.error, ETIMEDOUT);
  const pid_t started = std::atoi(home.read("pid").c_str());
  ASSERT_GT(started, 0);
  EXPECT_TRUE(waitFor([&] { return ::kill(started, 0) != 0; }));
}

// A daemon of the helper's own group may hold the output.
TEST_F(HelperTest, IsNotWaitedForLongerThanItRuns) {
  EXPECT_EQ(run("sleep 300 & echo $! >" + home.path("pid")).error, 0);
  EXPECT_EQ(::kill(std::atoi(home.read("pid").c_str()), SIGKILL), 0);
}

TEST(VolumeTest, CountsOnlyWhenItIsAnotherFileSystem) {
  const ScratchFolder home;
  home.makeFolder("Backups");
  home.write("file", "");
  EXPECT_EQ(lookAtVolume("//proc", std::chrono::seconds(20)).state, VolumeState::mounted);
  for (const char* name : {"Backups", "missing", "file", "file/below"}) {
    EXPECT_EQ(lookAtVolume(home.path(name), std::chrono::seconds(20)).state, VolumeState::none) << name;
  }
  EXPECT_TRUE(isVolumeMounted("/", "proc"));
  EXPECT_FALSE(isVolumeMounted("/", "tmp/../proc"));
}

TEST(VolumeTest, OneThatDoesNotAnswerIsNotWaitedForAndCanBeTakenAway) {
  const ScratchFolder home;
  const std::string folder = home.makeFolder("Backups");
  SilentVolume volume(folder);
  if (!volume.isMounted()) GTEST_SKIP() << "no FUSE, or this user may not mount";
  EXPECT_EQ(lookAtVolume(folder, milliseconds(200)).error, ETIMEDOUT);
  volume.close();
  const auto dead = lookAtVolume(folder, std::chrono::seconds(20));
  EXPECT_EQ(dead.state, VolumeState::broken) << dead.error;
  detachVolume(folder, std::chrono::seconds(20));
  EXPECT_EQ(lookAtVolume(folder, std::chrono::seconds(20)).state, VolumeState::none);
}

TEST(VolumeTest, AFolderThatCannotBeMadeIsTheCause) {
  const ScratchFolder home;
  home.write("file", "");
  const auto outcome = mountServerVolume(home.path("file"), volumeOf({"sftp", "127.0.0.1:1", "B", "u"}));
  EXPECT_EQ(outcome.error, ENOTDIR);
  EXPECT_THAT(outcome.problem, HasSubstr("/file/B: Not a directory"));
}

}  // namespace
}  // namespace corvane
