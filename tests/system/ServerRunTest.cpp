// Backups to real file servers: an SFTP and a WebDAV server of the test's own, on the loopback device.
//
// Archives for a server are built under fixed names in /tmp, so these tests run one at a time.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <unistd.h>

#include <csignal>
#include <set>
#include <thread>

#include "process/Files.h"
#include "process/RunTool.h"
#include "tests/support/SilentVolume.h"
#include "tests/support/WaitFor.h"
#include "tests/system/EngineRun.h"

namespace corvane {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr std::chrono::seconds kLong{100};
constexpr const char* kCanary = "Kanarienvogel, \"7\" $HOME";
constexpr const char* kXmlCanary = "Kanarienvogel, &quot;7&quot; $HOME";

class ServerRunTest : public testing::Test {
 protected:
  void SetUp() override {
    makeFolders(shared());
    if (!SilentVolume(shared()).isMounted()) GTEST_SKIP() << "no FUSE here, or this user may not mount";
    engine.nameArchives("(Email Client)-" + tag + ".qvb");
    engine.installTool("osascript", "");
    installDitto("");
    writeTestFile(engine.library() + "/Mail/V9/1.emlx", "mail");
  }

  ~ServerRunTest() override {
    ::umount2(folder().c_str(), MNT_DETACH | UMOUNT_NOFOLLOW);
    EXPECT_TRUE(waitFor([this] { return namedAfterUs("/var/run/mount.davfs").empty(); }, kLong));
    for (const auto& cache : namedAfterUs("/var/cache/davfs2")) removeTree(cache);
    ::rmdir(folder().c_str());
    if (!hadVolumes) ::rmdir("/Volumes");
  }

  // Keeps the script, and does `first` before the last archive is made.
  void installDitto(const std::string& first) {
    engine.installTool("ditto",
                       "cat \"$HOME/Library/Application Support/Quillon/Corvane/.corvane.sh\" "
                       ">\"$HOME/script\"\ncase \"$*\" in *corvane.qvb) " +
                           first + ":;; esac\nexec " DITTO_PATH " \"$@\"\n");
  }

  // Serves a folder to "anna" with the canary for a password, which stands in the server's own environment.
  void serve(const std::string& kind) {
    auto environment = currentEnvironment();
    setVariable(environment, "HOME", engine.home());
    setVariable(environment, "RCLONE_USER", "anna");
    setVariable(environment, "RCLONE_PASS", kCanary);
    const std::string log = engine.home() + "/server";
    const int output = ::open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    serverPid = spawn({"/usr/bin/rclone",
                       {"rclone", "serve", kind, engine.home() + "/served", "--addr", "127.0.0.1:0",
                        "--vfs-cache-mode", "writes", "--vfs-write-back", "0"},
                       environment},
                      output)
                    .pid;
    ::close(output);
    ASSERT_GT(serverPid, 0);
    server = std::make_unique<ChildProcess>(serverPid);
    std::size_t at = 0;
    ASSERT_TRUE(
        waitFor([&] { return (at = readTestFile(log).rfind("127.0.0.1:")) != std::string::npos; }, kLong));
    host = "127.0.0.1:" + std::to_string(std::atoi(readTestFile(log).c_str() + at + 10));
  }

  void configure(const std::string& protocol, const std::string& address, const std::string& password,
                 const std::string& clients = "Apple Mail", const std::string& more = "") {
    writeTestFile(
        engine.configuration(),
        xmlPropertyList(
            "<key>Destination</key><string>" + folder() + "</string><key>Clients</key><array><string>" +
            clients + "</string></array>" + more + "<key>Automount</key><dict><key>Server</key><string>" +
            address + "</string><key>Path</key><string>" + name + "</string><key>Protocol</key><string>" +
            protocol + "</string><key>Username</key><string>anna</string><key>Password</key><string>" +
            password + "</string></dict>"));
  }

  void run(int status) {
    engine.start();
    EXPECT_EQ(engine.exitStatus(kLong), status);
    EXPECT_THAT(engine.log(), Not(HasSubstr("Kanarienvogel")));
  }

  // The server itself takes a moment to put away what it was sent.
  void expectArchiveOf(const std::string& client) const {
    const std::string archive = client + "-" + tag + ".qvb";
    const std::vector<std::string> check{"/usr/bin/unzip", "-tq", shared() + "/" + archive};
    EXPECT_TRUE(waitFor([&] { return runTool(check).status == 0; }, kLong));
    EXPECT_TRUE(waitFor([&] { return removeFile(folder() + "/" + archive); }, kLong));
    EXPECT_FALSE(fileExists("/tmp/" + archive));
  }

  // What the WebDAV helper keeps in `place` of our volume.
  [[nodiscard]] std::vector<std::string> namedAfterUs(const std::string& place) const {
    std::vector<std::string> paths;
    for (const auto& entry : namesIn(place)) {
      if (entry.find(name) != std::string::npos) paths.push_back(place + "/" + entry);
    }
    return paths;
  }

  [[nodiscard]] std::string folder() const { return "/Volumes/" + name; }
  [[nodiscard]] std::string shared() const { return engine.home() + "/served/" + name; }

  const bool hadVolumes = isFolder("/Volumes");
  const std::string tag = std::to_string(::getpid());
  const std::string name = "Sauvegard\u00E9 de " + tag;
  const std::string escapedName = "Sauvegard%C3%A9%20de%20" + tag;
  EngineRun engine;
  std::string host;
  pid_t serverPid = -1;
  std::unique_ptr<ChildProcess> server;
};

struct Protocol {
  const char *name, *server, *helper;
};

class ProtocolRunTest : public ServerRunTest, public testing::WithParamInterface<Protocol> {};

TEST_P(ProtocolRunTest, TheArchiveArrivesAndThePasswordIsShownNowhere) {
  ASSERT_NO_FATAL_FAILURE(serve(GetParam().server));
  configure(GetParam().name, host, kXmlCanary);
  // All programs that were seen, and those that showed the canary in their arguments or environment.
  std::set<std::string> programs, betrayers;
  std::jthread sampler([&](const std::stop_token& stop) {
    while (!stop.stop_requested()) {
      for (const auto& entry : namesIn("/proc")) {
        if (entry.front() > '9' || entry == std::to_string(serverPid)) continue;
        const std::string arguments = readTestFile("/proc/" + entry + "/cmdline");
        const std::string program = arguments.substr(0, arguments.find('\0'));
        programs.insert(program.substr(program.find_last_of('/') + 1));
        const std::string all = arguments + readTestFile("/proc/" + entry + "/environ");
        if (all.find("Kanarienvogel") != std::string::npos) betrayers.insert(program);
      }
    }
  });
  run(0);
  sampler.request_stop();
  sampler.join();
  EXPECT_THAT(betrayers, ElementsAre());
  EXPECT_THAT(programs, AllOf(testing::Contains("BackupEngine"), testing::Contains(GetParam().helper)));
  const std::string url = GetParam().name + ("://" + host) + "/" + escapedName;
  EXPECT_THAT(engine.log(), AllOf(HasSubstr("] Mounting Server Volume...\n"),
                                  HasSubstr("] Sync-mounted server " + url + ", user == anna, refNum == "),
                                  HasSubstr("] Server based destination is now available\n"),
                                  HasSubstr("] Backup destination mounted\n")));
  EXPECT_THAT(readTestFile(engine.home() + "/script"),
              AllOf(HasSubstr("Moving Backup file to server volume"), Not(HasSubstr("Kanarienvogel"))));
  expectArchiveOf("Mail");

  // The volume is still there, and is used whatever server the next run names.
  configure(GetParam().name, "no-such-host.invalid", "");
  run(0);
  EXPECT_THAT(engine.log(), HasSubstr("] Server based destination is available\n"));
  expectArchiveOf("Mail");
}

INSTANTIATE_TEST_SUITE_P(Servers, ProtocolRunTest,
                         testing::Values(Protocol{"sftp", "sftp", "sshfs"},
                                         Protocol{"http", "webdav", "mount.davfs"}),
                         [](const auto& test) { return test.param.name; });

struct Refusal {
  const char *name, *protocol;
  const char* server;  // what is served
  const char* host;    // null for the server's own
  const char* password;
  int signal;  // sent to the server before the run
  const char* cause;
};

class RefusedRunTest : public ServerRunTest, public testing::WithParamInterface<Refusal> {};

TEST_P(RefusedRunTest, EndsTheRunAndLeavesNothingBehind) {
  const Refusal& row = GetParam();
  ASSERT_NO_FATAL_FAILURE(serve(row.server));
  const std::string asked = row.host ? row.host : host;
  configure(row.protocol, asked, row.password);
  if (row.signal != 0) ::kill(serverPid, row.signal);
  run(1);
  const std::string url = row.protocol + ("://" + asked) + "/" + escapedName;
  EXPECT_THAT(engine.log(),
              AllOf(HasSubstr("] Sync mount failed for server " + url + ", error == "), HasSubstr(row.cause),
                    HasSubstr("] Server based destination is not available\n")));
  EXPECT_FALSE(fileExists(folder()));
  EXPECT_EQ(isFolder("/Volumes"), hadVolumes);
}

INSTANTIATE_TEST_SUITE_P(
    Servers, RefusedRunTest,
    testing::Values(
        Refusal{"SftpPassword", "sftp", "sftp", nullptr, "Kanarienvogel", 0, "sshfs failed with status 1"},
        Refusal{"DavPassword", "dav", "webdav", nullptr, "Kanarienvogel", 0, "davfs failed with status 1"},
        Refusal{"UnknownHost", "ssh", "sftp", "no-such-host.invalid", "x", 0, "sshfs failed with status 1"},
        Refusal{"UnknownProtocol", "afp", "sftp", nullptr, "x", 0, "knows no such protocol"},
        Refusal{"SilentSftp", "sftp", "sftp", nullptr, kXmlCanary, SIGSTOP, "sshfs failed with status 1"},
        Refusal{"DeadDav", "http", "webdav", nullptr, kXmlCanary, SIGKILL, "mounting anyway"}),
    [](const auto& test) { return test.param.name; });

// What the script says last does not depend on the copy. The volume stays in its place, so that the copy
// fails and does not land on this machine's own disk.
TEST_F(ServerRunTest, AServerThatStopsInTheMiddleHoldsNothingUp) {
  ASSERT_NO_FATAL_FAILURE(serve("sftp"));
  configure("sftp", host, kXmlCanary);
  installDitto("kill -KILL " + std::to_string(serverPid) + ";");
  run(0);
  EXPECT_THAT(engine.log(), AllOf(HasSubstr("cp: "), HasSubstr(": Input/output error")));
  EXPECT_EQ(::umount2(folder().c_str(), MNT_DETACH), 0);
  EXPECT_THAT(namesIn(folder()), ElementsAre());
}

TEST_F(ServerRunTest, EveryKindOfClientReachesAServerThatWasLost) {
  ASSERT_NO_FATAL_FAILURE(serve("sftp"));
  configure("sftp", host, kXmlCanary,
            "Apple Mail</string><string>Microsoft Outlook 2011</string><string>Thunderbird</string>"
            "<string>GyazMail",
            "<key>Backup Address Book</key><true/><key>Number Of Backups</key><integer>1</integer>");
  for (const char* file : {"Library/Application Support/AddressBook/cards", "Library/Thunderbird/inbox",
                           "Documents/Microsoft User Data/Office 2011 Identities/inbox",
                           "Library/Preferences/jp.gyazsquare.GyazMail.plist"}) {
    writeTestFile(engine.home() + "/" + file, "data");
  }
  makeFolders(folder());
  SilentVolume lost(folder());
  lost.close();
  run(0);
  for (const char* client : {"Mail+AB", "Outlook2011", "Thunderbird", "GyazMail"}) expectArchiveOf(client);
}

}  // namespace
}  // namespace corvane
