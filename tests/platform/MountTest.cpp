// How server volumes are mounted here, short of a server: what the helpers are told, and what they may do.

#include <gmock/gmock.h>
#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "app/Leftovers.h"
#include "platform/mount/Helper.h"
#include "platform/mount/MountFolder.h"
#include "platform/mount/ServerMount.h"
#include "platform/mount/VolumeProbe.h"
#include "tests/support/OwnMounts.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/SilentVolume.h"
#include "tests/support/StandardError.h"
#include "tests/support/WaitFor.h"

namespace corvane {
namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;

constexpr milliseconds kLong{20000};
const std::string kSecret = "-o \"a,b\"; $HOME @:/%";

struct PlanCase {
  const char *protocol, *server, *path, *user;
  const char* command = "";  // its end
  std::string input = kSecret + "\n";
};

// The helper's command, or what is wrong.
std::string planned(const PlanCase& row, std::string& input, const std::string& password = kSecret) {
  MountOutcome refusal;
  const ServerVolume volume{.url = "URL",
                            .protocol = row.protocol,
                            .server = row.server,
                            .name = row.path,
                            .user = row.user,
                            .password = password};
  const auto plan = mountPlanFor(volume, "/V", refusal);
  if (!plan) return std::to_string(refusal.error) + " " + refusal.problem;
  input = plan->input;
  std::string command = plan->helper;
  for (const auto& argument : plan->arguments) command += "|" + argument;
  EXPECT_EQ((command + plan->settings).find(kSecret), std::string::npos);
  return command;
}

TEST(MountPlanTest, TellsTheHelperWhatIsMeantAndNothingElse) {
  const PlanCase rows[] = {
      {"sftp", "files.local", "My Disk", "anna",
       "|-o|NumberOfPasswordPrompts=1|anna@files.local:/My Disk|/V"},
      {"SSH", "10.0.0.7:2222", "a/b", "a@b.c", "|-p|2222|a@b.c@10.0.0.7:/a/b|/V"},
      {"ssh", "::1", "x:y", "", "|[::1]:/x:y|/V"},
      {"sftp", "[fe80::7]:22", "-o x", "anna", "|-p|22|anna@[fe80::7]:/-o x|/V"},
      {"http", "h:80", "B\u00E9 d", "a@b=c/d",
       "mount.davfs|-o|username=a@b=c/d|-o|conf=|http://h:80/B\u00E9 d|/V"},
      {"davs", "[::1]:8443", "B", "", "mount.davfs|-o|conf=|https://[::1]:8443/B|/V", "\n" + kSecret + "\n"},
      {"smb", "nas", "Share", "anna", "mount.cifs|//nas/Share|/V|-o|user=anna,nosuid,nodev,noexec"},
      {"cifs", "nas:4455", "Share/sub", "",
       "mount.cifs|//nas/Share/sub|/V|-o|guest,nosuid,nodev,noexec,port=4455"},
      {"nfs", "::1", "export", "anna",
       "mount.nfs|[::1]:/export|/V|-o|soft,timeo=100,retrans=2,retry=0,nosuid,nodev,noexec", ""}};
  for (const auto& row : rows) {
    std::string input;
    EXPECT_THAT(planned(row, input), testing::EndsWith(row.command));
    EXPECT_EQ(input, row.input);
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
      {"http", "h", "B", "u:x"},   {"http", "h", "B", "u\nx"},    {"sftp", "h", "]@evil:/y", "[x"},
      {"http", "h", "B", "u,x"}};
  std::string input;
  for (const auto& row : rows)
    EXPECT_THAT(planned(row, input), testing::ContainsRegex("^(22|93) cannot mount URL: "))
        << row.server << row.path;
  EXPECT_THAT(planned({"sftp", "h", "B", "u"}, input, "a\nb"),
              HasSubstr("the password cannot be handed over"));
}

class HelperTest : public testing::Test {
 protected:
  HelperTest() { ::setenv("PATH", (":.:" + home.path() + ":" + path_).c_str(), 1); }
  ~HelperTest() override { ::setenv("PATH", path_.c_str(), 1); }

  MountOutcome run(const std::string& script, milliseconds limit = kLong) {
    home.writeScript("mount.odd", "cd " + home.path() + "\n" + script);
    return runHelper(
        {"mount.odd", {kSettingsFile, "$HOME; x"}, "anna\ns3cret\n", "ask 0\n", {}, "gave up", {"PASSWD"}},
        {.limit = limit});
  }

  ScratchFolder home;

 private:
  const std::string path_ = std::getenv("PATH");
};

TEST_F(HelperTest, GetsItsArgumentsItsInputAndItsSettings) {
  ::setenv("PASSWD", "another's", 1);
  EXPECT_EQ(
      run("f=${1#conf=}; { stat -c %a $f; cat $f; echo \"$2$PASSWD\"; cat; } >out; printf $f >file").problem,
      "");
  EXPECT_EQ(home.read("out"), "600\nask 0\n$HOME; x\nanna\ns3cret\n");
  EXPECT_NE(::access(home.read("file").c_str(), F_OK), 0);
}

TEST_F(HelperTest, FailuresNameTheCauseAndNotThePassword) {
  EXPECT_EQ(run("echo no s3cret for anna; exit 3").problem,
            "mount.odd failed with status 3: no ... for anna ");
  EXPECT_THAT(run("printf 'a\\033\\tb'; exit 3").problem, testing::EndsWith(": a  b"));
  EXPECT_THAT(run("printf '\\303\\251%0499d' 0; exit 3").problem,
              testing::EndsWith(": ..." + std::string(499, '0')));
  EXPECT_EQ(run("echo gave up").error, EIO);
  EXPECT_EQ(runHelper({.helper = "mount.no-such"}, {.limit = kLong}).error, ENOENT);
}

// It may leave a daemon in its own group that holds its output.
TEST_F(HelperTest, IsWaitedForAndEndedAsAWhole) {
  EXPECT_EQ(run("sleep 300 & echo $! >pid").error, 0);
  EXPECT_EQ(::kill(std::atoi(home.read("pid").c_str()), SIGKILL), 0);
  EXPECT_EQ(run("sleep 300 & echo $! >pid; wait", milliseconds(500)).error, ETIMEDOUT);
  EXPECT_TRUE(waitFor([this] { return ::kill(std::atoi(home.read("pid").c_str()), 0) != 0; }));
}

TEST_F(HelperTest, AFailedMountTakesAwayItsOwnVolumeAndNoOther) {
  OwnMounts mounts;
  if (!mounts.problem().empty()) GTEST_SKIP() << mounts.problem();
  home.writeScript("sshfs", "for last; do :; done; mount -t tmpfs none \"$last\"; exit 1");
  const auto errorOf = [this](const char* name) {
    return mountServerVolume(home.path(), {.protocol = "sftp", .server = "h", .name = name}).error;
  };
  EXPECT_EQ(errorOf("B"), EIO);
  EXPECT_NE(::access(home.path("B").c_str(), F_OK), 0);
  mounts.cover(home.makeFolder("B"), home.makeFolder("other"));
  EXPECT_EQ(errorOf("B"), EBUSY);
  EXPECT_TRUE(lookAtVolume(home.path("B"), kLong).isMountRoot);
  EXPECT_EQ(::symlink("/proc", home.path("link").c_str()), 0);
  EXPECT_FALSE(isVolumeMounted(home.path(), "link"));
  EXPECT_EQ(errorOf("link"), ELOOP);
}

TEST(VolumeTest, CountsOnlyWhenItIsAnotherFileSystem) {
  const ScratchFolder home;
  home.write("Backups/file", "");
  for (const char* name : {"Backups", "missing", "Backups/file", "Backups/file/below"}) {
    EXPECT_EQ(lookAtVolume(home.path(name), kLong).state, VolumeState::none) << name;
  }
  EXPECT_TRUE(isVolumeMounted("/", "proc"));
  EXPECT_FALSE(isVolumeMounted("/", "tmp/../proc"));
  const ServerVolume volume{.protocol = "sftp", .server = "127.0.0.1:1", .name = "B"};
  EXPECT_THAT(mountServerVolume(home.path("Backups/file"), volume).problem,
              HasSubstr("file/B: Not a directory"));
}

TEST(VolumeTest, OneThatDoesNotAnswerIsNotWaitedForAndCanBeTakenAway) {
  const ScratchFolder home;
  const std::string folder = home.makeFolder("Backups");
  SilentVolume volume(folder);
  if (!volume.isMounted()) GTEST_SKIP() << "no FUSE, or this user may not mount";
  const VolumeLook look = lookAtVolume(folder, milliseconds(500));
  EXPECT_EQ(look.state, VolumeState::noAnswer);
  EXPECT_TRUE(look.isMountRoot);
  volume.close();
  EXPECT_EQ(lookAtVolume(folder, kLong).state, VolumeState::broken);
  detachVolume(folder, kLong);
  EXPECT_EQ(lookAtVolume(folder, kLong).state, VolumeState::none);
}

// On a volume that maps owners a user's files are another's; and a folder can be used that cannot be listed.
TEST(LeftoversOnAVolume, AreJudgedByWhatTheUserCanDoThere) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can have another owner for new files";
  const ScratchFolder folder;
  const StandardError errors;
  ASSERT_EQ(::chown(folder.write("work", "mail").c_str(), 65534, 65534), 0);
  ASSERT_EQ(::chmod(folder.path().c_str(), 0733), 0);
  ::setfsuid(65534);
  EXPECT_FALSE(clearLeftovers({{folder.path(), "work"}, {folder.path(), "a", "b", Between::date}}, true));
  ::setfsuid(0);
  EXPECT_EQ(folder.list().size(), 0U);
  EXPECT_THAT(errors.text(), HasSubstr("] cannot list " + folder.path() + ": Permission denied\n"));
}

}  // namespace
}  // namespace corvane
