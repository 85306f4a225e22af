#include "tests/system/EngineRun.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <algorithm>
#include <csignal>
#include <cstdlib>

#include "process/Files.h"
#include "process/RunTool.h"
#include "tests/support/WaitFor.h"

extern "C" const char* __lsan_default_suppressions();  // NOLINT: the name that the sanitizer looks for

namespace corvane {
namespace {

// What every process of one test sees: its home, and its own meeting place for notifications.
std::vector<std::string> environmentIn(const std::string& home, const std::string& display) {
  auto environment = currentEnvironment();
  setVariable(environment, "HOME", home);
  setVariable(environment, "XDG_DATA_HOME", home + "/.local/share");
  setVariable(environment, "TMP", home + "/tmp");
  setVariable(environment, "PATH", home + "/bin:/usr/bin:/bin");
  setVariable(environment, "DISPLAY", display);
  // In a build with sanitizers: no status that the engine has itself, and other libraries may come first.
  setVariable(environment, "ASAN_OPTIONS", "exitcode=99:verify_asan_link_order=0");
  setVariable(environment, "LSAN_OPTIONS", "print_suppressions=0:suppressions=" + home + "/leaks");
  return environment;
}

// What the system says of a running process; 0 when it has ended.
long peakMemoryOf(pid_t pid) {
  const std::string status = readTestFile("/proc/" + std::to_string(pid) + "/status");
  const auto line = status.find("VmHWM:");
  return line == std::string::npos ? 0 : std::strtol(status.c_str() + line + 6, nullptr, 10);
}

// The engine's frameworks start one themselves, apart from the engine, where ours does not answer.
void endNotificationDaemons(const std::string& home) {
  for (const auto& pid : namesIn("/proc")) {
    if (readTestFile("/proc/" + pid + "/comm") != "gdnc\n") continue;
    const std::string environment = readTestFile("/proc/" + pid + "/environ");
    if (environment.find("HOME=" + home + '\0') != std::string::npos) ::kill(std::stoi(pid), SIGKILL);
  }
}

}  // namespace

std::string xmlPropertyList(const std::string& entries) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>" + entries +
         "</dict></plist>\n";
}

EngineRun::EngineRun(uid_t user) : user_(user) {
  writeTestFile(preferences(), xmlPropertyList("<key>currentConfiguration</key><string>Daily</string>"));
  for (const auto& folder : {support(), destination(), home() + "/tmp", home() + "/bin"}) makeFolders(folder);
  writeTestFile(home() + "/leaks", __lsan_default_suppressions());
  notificationCentre_ = launch({"/usr/bin/gdnc", "--no-fork"}, "", "gdnc.log", daemonPid_);
}

EngineRun::~EngineRun() {
  endNotificationDaemons(home());
  if (!testing::Test::HasFailure()) return;
  const std::string all = log();
  const std::size_t shown = std::min<std::size_t>(all.size(), 8192);
  std::fprintf(stderr, "the end of the engine's log:\n%s\n", all.c_str() + all.size() - shown);
}

void EngineRun::configure(const std::string& entries) {
  writeTestFile(configuration(),
                xmlPropertyList("<key>App Location</key><string>/</string><key>Destination</key><string>" +
                                destination() + "</string>" + entries));
}

void EngineRun::configureMail() {
  configure("<key>Clients</key><array><string>Apple Mail</string></array>");
  writeTestFile(library() + "/Mail/V9/INBOX.mbox/1.emlx", "From: anna\n\nHello\n");
  writeTestFile(library() + "/Mail/V9/Entwürfe.mbox/2.emlx", "From: anna\n\nGrüße\n");
}

void EngineRun::nameArchives(const std::string& filenameTemplate) {
  writeTestFile(preferences(), xmlPropertyList("<key>currentConfiguration</key><string>Daily</string>"
                                               "<key>filenameTemplate</key><string>" +
                                               filenameTemplate + "</string>"));
}

void EngineRun::installTool(const std::string& name, const std::string& script) {
  home_.writeScript("bin/" + name, script);
}

pid_t EngineRun::toolsProcess() const {
  EXPECT_TRUE(
      waitFor([this] { return readTestFile(home() + "/pid").ends_with('\n'); }, std::chrono::seconds(20)));
  return std::atoi(readTestFile(home() + "/pid").c_str());
}

std::unique_ptr<ChildProcess> EngineRun::launch(std::vector<std::string> words, const std::string& display,
                                                const std::string& outputName, pid_t& pid) {
  if (user_ != ::geteuid()) {
    const std::string id = std::to_string(user_);
    EXPECT_EQ(runTool({"/bin/chown", "-hR", id + ":" + id, home()}).status, 0);
    words.insert(words.begin(), {"/usr/bin/setpriv", "--reuid", id, "--regid", id, "--clear-groups"});
  }
  const std::string file = home() + "/" + outputName;
  const int output = ::open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  const Spawned spawned = spawn({words.front(), words, environmentIn(home(), display)}, output);
  ::close(output);
  EXPECT_GT(spawned.pid, 0) << spawned.problem;
  pid = spawned.pid;
  return spawned.pid > 0 ? std::make_unique<ChildProcess>(spawned.pid) : nullptr;
}

void EngineRun::start(const std::string& display) {
  std::vector<std::string> words = starter_;
  words.push_back(ENGINE_PATH);
  status_.reset();
  engine_ = launch(std::move(words), display, "output", pid_);
}

std::optional<int> EngineRun::exitStatus(std::chrono::seconds limit) {
  // Looked at without taking the status away from `wait`.
  const auto ended = [this] {
    siginfo_t info{};
    peakMemory_ = std::max(peakMemory_, peakMemoryOf(pid_));
    return ::waitid(P_PID, static_cast<id_t>(pid_), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid == pid_;
  };
  if (status_ || !waitFor(ended, limit)) return status_;
  status_ = engine_->wait();
  // In a build with sanitizers, also of a tool.
  const auto reports = runTool({"/bin/grep", "-D", "skip", "-saoE", ".*Sanitizer: .*|.*runtime error: .*",
                                home() + "/output", library() + "/Logs/Corvane.log"});
  EXPECT_EQ(reports.output, "");
  return status_;
}

std::optional<int> EngineRun::run() {
  start();
  return exitStatus();
}

bool EngineRun::logs(const std::string& text, std::chrono::seconds limit) const {
  return waitFor([&] { return log().find(text) != std::string::npos; }, limit);
}

std::string EngineRun::log() const { return readTestFile(library() + "/Logs/Corvane.log"); }

void EngineRun::listen() {
  pid_t pid = -1;
  listener_ = launch({LISTENER_PATH, "com.quillon.Corvane.executionComplete"}, "", "heard", pid);
  EXPECT_TRUE(waitFor([this] { return readTestFile(home() + "/heard") != ""; }, std::chrono::seconds(10)));
}

int EngineRun::announcements() const {
  const std::string heard = readTestFile(home() + "/heard");
  const std::string line = "\nheard\n";
  int count = 0;
  for (auto at = heard.find(line); at != std::string::npos; at = heard.find(line, at + 1)) ++count;
  return count;
}

std::string EngineRun::output() const { return readTestFile(home() + "/output"); }

}  // namespace corvane
