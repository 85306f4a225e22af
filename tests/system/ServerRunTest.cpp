// Backups to real file servers: an SFTP and a WebDAV server of the test's own, on the loopback device.
//
// Archives for a server are built under fixed names in /tmp, so these tests run one at a time.

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
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

constexpr const char* kCanary = "Kanarienvogel, \"7\" $HOME";
constexpr const char* kXmlCanary = "Kanarienvogel, &quot;7&quot; $HOME";

sockaddr_in loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

// What `use`, given a new socket and an address, says of the port.
template <typename Use>
auto withSocket(int port, Use use) {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = loopback(port);
  const auto answer = use(socket, reinterpret_cast<sockaddr*>(&address));
  ::close(socket);
  return answer;
}

int freePort() {
  return withSocket(0, [](int socket, sockaddr* address) {
    socklen_t size = sizeof(sockaddr_in);
    EXPECT_EQ(::bind(socket, address, size), 0);
    EXPECT_EQ(::getsockname(socket, address, &size), 0);
    return static_cast<int>(ntohs(reinterpret_cast<sockaddr_in*>(address)->sin_port));
  });
}

bool answers(int port) {
  return withSocket(port, [](int socket, sockaddr* address) {
    return ::connect(socket, address, sizeof(sockaddr_in)) == 0;
  });
}

/// Serves a folder to "anna" with the canary for a password, which stands in its own environment.
class FileServer {
 public:
  FileServer(const std::string& kind, const std::string& folder, const std::string& home) {
    auto environment = currentEnvironment();
    setVariable(environment, "HOME", home);
    setVariable(environment, "RCLONE_USER", "anna");
    setVariable(environment, "RCLONE_PASS", kCanary);
    const std::string address = "127.0.0.1:" + std::to_string(port);
    const LaunchCommand command{"/usr/bin/rclone",
                                {"rclone", "serve", kind, folder, "--addr", address, "--vfs-cache-mode",
                                 "writes", "--vfs-write-back", "0"},
                                environment};
    pid = spawn(command, STDERR_FILENO, false).pid;
    process_ = std::make_unique<ChildProcess>(pid);
    EXPECT_TRUE(waitFor([this] { return answers(port); }, std::chrono::seconds(30)));
  }
  ~FileServer() { ::kill(pid, SIGCONT); }
  FileServer(const FileServer&) = delete;
  FileServer& operator=(const FileServer&) = delete;

  const int port = freePort();
  pid_t pid = -1;

 private:
  std::unique_ptr<ChildProcess> process_;
};

/// Reads the arguments and the environment of every process but one, over and over.
class ProcessSampler {
 public:
  explicit ProcessSampler(pid_t except)
      : except_(std::to_string(except)), thread_([this] { sampleUntilStopped(); }) {}
  ~ProcessSampler() { stop(); }
  ProcessSampler(const ProcessSampler&) = delete;
  ProcessSampler& operator=(const ProcessSampler&) = delete;

  std::set<std::string> names;      ///< of the programs seen
  std::set<std::string> betrayers;  ///< those that showed the canary
  void stop() {
    stop_ = true;
    if (thread_.joinable()) thread_.join();
  }

 private:
  void sampleUntilStopped() {
    while (!stop_) {
      for (const auto& entry : namesIn("/proc")) {
        if (entry.front() <= '9' && entry != except_) sample("/proc/" + entry);
      }
    }
  }
  void sample(const std::string& process) {
    const std::string arguments = readTestFile(process + "/cmdline");
    const std::string name = arguments.substr(0, arguments.find('\0'));
    names.insert(name.substr(name.find_last_of('/') + 1));
    const std::string all = arguments + readTestFile(process + "/environ");
    if (all.find("Kanarienvogel") != std::string::npos) betrayers.insert(name);
  }

  const std::string except_;
  std::atomic<bool> stop_ = false;
  std::thread thread_;
};

class ServerRunTest : public testing::Test {
 protected:
  void SetUp() override {
    if (::access("/dev/fuse", R_OK | W_OK) != 0) GTEST_SKIP() << "no FUSE: /dev/fuse cannot be used here";
    makeFolders(shared());
    if (::mount("none", shared().c_str(), "tmpfs", 0, nullptr) != 0)
      GTEST_SKIP() << "this user may not mount";
    ::umount(shared().c_str());
    writeTestFile(engine.preferences(),
                  xmlPropertyList("<key>currentConfiguration</key><string>Daily</string>"
                                  "<key>filenameTemplate</key><string>(Email Client)-" +
                                  tag + ".qvb</string>"));
    engine.installTool("osascript", "");
    installDitto("");
    writeTestFile(engine.library() + "/Mail/V9/1.emlx", "mail");
  }

  ~ServerRunTest() override {
    ::umount2(folder().c_str(), MNT_DETACH | UMOUNT_NOFOLLOW);
    EXPECT_TRUE(waitFor([this] { return namedAfterUs("/var/run/mount.davfs").empty(); }));
    for (const auto& cache : namedAfterUs("/var/cache/davfs2")) removeTree(cache);
    ::rmdir(folder().c_str());
    if (!hadVolumes) ::rmdir("/Volumes");
  }

  // Keeps the script, and does `first` before the last archive is made.
  void installDitto(const std::string& first) {
    engine.installTool(
        "ditto",
        "cat \"$HOME/Library/Application Support/Quillon/Corvane/.corvane.sh\" >\"$HOME/script\"\n"
        "case \"$*\" in *corvane.qvb) " +
            first + ":;; esac\nexec " DITTO_PATH " \"$@\"\n");
  }

  void serve(const std::string& kind) {
    server = std::make_unique<FileServer>(kind, engine.home() + "/served", engine.home());
  }

  void configure(const std::string& protocol, const std::string& host, const std::string& password,
                 const std::string& more = "<key>Clients</key><array><string>Apple Mail</string></array>") {
    const auto entry = [](const std::string& key, const std::string& value) {
      return "<key>" + key + "</key><string>" + value + "</string>";
    };
    writeTestFile(
        engine.configuration(),
        xmlPropertyList(entry("Destination", folder()) + "<key>Automount</key><dict>" +
                        entry("Server", host) + entry("Path", name) + entry("Protocol", protocol) +
                        entry("Username", "anna") + entry("Password", password) + "</dict>" + more));
  }

  [[nodiscard]] std::string host() const { return "127.0.0.1:" + std::to_string(server->port); }
  [[nodiscard]] std::string folder() const { return "/Volumes/" + name; }
  [[nodiscard]] std::string shared() const { return engine.home() + "/served/" + name; }
  [[nodiscard]] std::string archive(const std::string& client) const { return client + "-" + tag + ".qvb"; }

  // What the WebDAV helper keeps in `place` of our volume.
  [[nodiscard]] std::vector<std::string> namedAfterUs(const std::string& place) const {
    std::vector<std::string> paths;
    for (const auto& entry : namesIn(place)) {
      if (entry.find(name) != std::string::npos) paths.push_back(place + "/" + entry);
    }
    return paths;
  }
  // The server itself takes a moment to put away what it was sent.
  [[nodiscard]] bool arrived(const std::string& file) const {
    return waitFor([&] { return fileExists(shared() + "/" + file); });
  }

  const bool hadVolumes = isFolder("/Volumes");
  const std::string tag = std::to_string(::getpid());
  const std::string name = "Sauvegard\u00E9 de " + tag;
  const std::string escapedName = "Sauvegard%C3%A9%20de%20" + tag;
  EngineRun engine;
  std::unique_ptr<FileServer> server;
};

struct Protocol {
  const char* name;
  const char* server;
  const char* helper;
};

class ProtocolRunTest : public ServerRunTest, public testing::WithParamInterface<Protocol> {};

TEST_P(ProtocolRunTest, TheArchiveArrivesAndThePasswordIsShownNowhere) {
  serve(GetParam().server);
  configure(GetParam().name, host(), kXmlCanary);
  ProcessSampler sampler(server->pid);
  EXPECT_EQ(engine.run(), 0);
  sampler.stop();
  EXPECT_THAT(sampler.betrayers, ElementsAre());
  EXPECT_THAT(sampler.names,
              testing::IsSupersetOf({std::string("BackupEngine"), std::string(GetParam().helper)}));
  const std::string url = GetParam().name + ("://" + host()) + "/" + escapedName;
  EXPECT_THAT(engine.log(),
              AllOf(HasSubstr("] Mounting Server Volume...\n"),
                    HasSubstr("] Sync-mounted server " + url + ", user == anna, refNum == "),
                    HasSubstr("] Server based destination is now available\n"),
                    HasSubstr("] Backup destination mounted\n"), Not(HasSubstr("Kanarienvogel"))));
  EXPECT_THAT(readTestFile(engine.home() + "/script"),
              AllOf(HasSubstr("Moving Backup file to server volume"), Not(HasSubstr("Kanarienvogel"))));
  ASSERT_TRUE(arrived(archive("Mail")));
  EXPECT_EQ(runTool({"/usr/bin/unzip", "-tq", shared() + "/" + archive("Mail")}).status, 0);
  EXPECT_FALSE(fileExists("/tmp/" + archive("Mail")));
  EXPECT_TRUE(removeFile(folder() + "/" + archive("Mail")));

  // The volume is still there, and is used whatever server the next run names.
  configure(GetParam().name, "no-such-host.invalid", "");
  removeFile(engine.library() + "/Logs/Corvane.log");
  engine.start();
  EXPECT_EQ(engine.exitStatus(), 0);
  EXPECT_THAT(engine.log(), AllOf(HasSubstr("] Server based destination is available\n"),
                                  Not(HasSubstr("Mounting Server Volume"))));
  EXPECT_TRUE(arrived(archive("Mail")));
}

INSTANTIATE_TEST_SUITE_P(Servers, ProtocolRunTest,
                         testing::Values(Protocol{"sftp", "sftp", "sshfs"},
                                         Protocol{"http", "webdav", "mount.davfs"}),
                         [](const auto& test) { return test.param.name; });

struct Refusal {
  const char* name;
  const char* protocol;
  const char* server;  // what is served
  const char* host;    // null for the server's own
  const char* password;
  int signal;  // sent to the server before the run
  const char* cause;
};

class RefusedRunTest : public ServerRunTest, public testing::WithParamInterface<Refusal> {};

TEST_P(RefusedRunTest, EndsTheRunAndLeavesNothingBehind) {
  const Refusal& row = GetParam();
  serve(row.server);
  configure(row.protocol, row.host ? row.host : host(), row.password);
  if (row.signal != 0) ::kill(server->pid, row.signal);
  engine.start();
  EXPECT_EQ(engine.exitStatus(std::chrono::seconds(100)), 1);
  const std::string url =
      row.protocol + ("://" + std::string(row.host ? row.host : host())) + "/" + escapedName;
  EXPECT_THAT(
      engine.log(),
      AllOf(HasSubstr("] Sync mount failed for server " + url + ", error == "), HasSubstr(row.cause),
            HasSubstr("] Server based destination is not available\n"), Not(HasSubstr("Kanarienvogel"))));
  EXPECT_FALSE(fileExists(folder()));
  EXPECT_EQ(isFolder("/Volumes"), hadVolumes);
}

INSTANTIATE_TEST_SUITE_P(
    Servers, RefusedRunTest,
    testing::Values(
        Refusal{"SftpPassword", "sftp", "sftp", nullptr, "Kanarienvogel", 0, "sshfs failed with status 1"},
        Refusal{"DavPassword", "dav", "webdav", nullptr, "Kanarienvogel", 0,
                "mount.davfs failed with status 1"},
        Refusal{"UnknownHost", "ssh", "sftp", "no-such-host.invalid", kXmlCanary, 0,
                "sshfs failed with status 1"},
        Refusal{"UnknownProtocol", "afp", "sftp", nullptr, kXmlCanary, 0, "knows no such protocol"},
        Refusal{"SilentSftp", "sftp", "sftp", nullptr, kXmlCanary, SIGSTOP, "sshfs failed with status 1"},
        Refusal{"DeadDav", "http", "webdav", nullptr, kXmlCanary, SIGKILL, "mounting anyway"}),
    [](const auto& test) { return test.param.name; });

// What the script says last does not depend on the copy. The volume stays in its place, so that the copy
// fails and does not land on this machine's own disk.
TEST_F(ServerRunTest, AServerThatStopsInTheMiddleHoldsNothingUp) {
  serve("sftp");
  configure("sftp", host(), kXmlCanary);
  installDitto("kill -KILL " + std::to_string(server->pid) + ";");
  engine.start();
  EXPECT_NE(engine.exitStatus(std::chrono::seconds(60)), std::nullopt);
  EXPECT_THAT(engine.log(), AllOf(HasSubstr("cp: "), HasSubstr(": Input/output error")));
  EXPECT_EQ(::umount2(folder().c_str(), MNT_DETACH), 0);
  EXPECT_THAT(namesIn(folder()), ElementsAre());
}

TEST_F(ServerRunTest, AVolumeThatLostItsServerIsMountedAnew) {
  serve("sftp");
  configure("sftp", host(), kXmlCanary);
  makeFolders(folder());
  SilentVolume lost(folder());
  ASSERT_TRUE(lost.isMounted());
  lost.close();
  EXPECT_EQ(engine.run(), 0);
  EXPECT_THAT(engine.log(), HasSubstr("] Server based destination is now available\n"));
  EXPECT_TRUE(arrived(archive("Mail")));
}

TEST_F(ServerRunTest, EveryKindOfClientReachesTheServer) {
  serve("sftp");
  configure(
      "sftp", host(), kXmlCanary,
      "<key>Clients</key><array><string>Apple Mail</string><string>Microsoft Outlook 2011</string>"
      "<string>Thunderbird</string><string>GyazMail</string></array><key>Backup Address Book</key><true/>"
      "<key>Number Of Backups</key><integer>1</integer>");
  for (const char* file : {"Library/Application Support/AddressBook/cards", "Library/Thunderbird/inbox",
                           "Documents/Microsoft User Data/Office 2011 Identities/inbox",
                           "Library/Preferences/jp.gyazsquare.GyazMail.plist"}) {
    writeTestFile(engine.home() + "/" + file, "data");
  }
  EXPECT_EQ(engine.run(), 0);
  for (const char* client : {"Mail+AB", "Outlook2011", "Thunderbird", "GyazMail"}) {
    EXPECT_TRUE(arrived(archive(client)));
    EXPECT_EQ(runTool({"/usr/bin/unzip", "-tq", shared() + "/" + archive(client)}).status, 0) << client;
    EXPECT_FALSE(fileExists("/tmp/" + archive(client)));
  }
}

}  // namespace
}  // namespace corvane
