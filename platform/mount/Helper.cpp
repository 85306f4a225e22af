#include "platform/mount/Helper.h"

#include <pwd.h>
#include <unistd.h>
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <string_view>

#include "process/Files.h"
#include "process/ProgramPath.h"
#include "process/RunTool.h"
#include "process/TemporaryNames.h"
#include "script/Text.h"

namespace corvane {
namespace {

constexpr const char* kUsualPath = "/usr/bin:/bin";
constexpr std::array kSystemCommands{"/usr/sbin", "/sbin"};  // what a user's PATH leaves out
constexpr std::size_t kMostBytes = 500;

// A file for the time of one run, for its owner only.
class SettingsFile {
 public:
  explicit SettingsFile(const std::string& text) {
    if (text.empty()) return;
    const int file = ::mkstemp(path_.data());
    made_ = file >= 0;
    if (!made_ || !writeAll(file, text)) problem_ = errnoSentence("write", path_);
    if (made_) ::close(file);
  }
  ~SettingsFile() {
    if (made_) removeFile(path_);
  }
  SettingsFile(const SettingsFile&) = delete;
  SettingsFile& operator=(const SettingsFile&) = delete;
  const std::string& path() const { return path_; }
  const std::string& problem() const { return problem_; }

 private:
  std::string path_ = std::string(kMountSettings) + "XXXXXX";
  std::string problem_;
  bool made_ = false;
};

// The last line that it was given.
std::string_view secretOf(const MountPlan& plan) {
  const auto lines = std::string_view(plan.input).substr(0, plan.input.find_last_of('\n'));
  return lines.substr(lines.find_last_of('\n') + 1);
}

// What it said, on one line, and without the password should it have repeated that.
std::string said(const MountPlan& plan, std::string output) {
  if (const auto secret = secretOf(plan); !secret.empty()) replaceAll(output, secret, "...");
  const auto isControl = [](unsigned char byte) { return byte < 0x20 || byte == 0x7f; };
  std::replace_if(output.begin(), output.end(), isControl, ' ');
  if (output.size() <= kMostBytes) return output;
  auto start = output.size() - kMostBytes;
  while (start < output.size() && (output[start] & 0xc0) == 0x80) ++start;  // not inside a character
  return "..." + output.substr(start);
}

MountOutcome judge(const MountPlan& plan, const ToolResult& result) {
  if (!result.problem.empty()) {
    return {.error = result.timedOut      ? ETIMEDOUT
                     : result.interrupted ? EINTR
                                          : EIO,
            .problem = result.problem};
  }
  const bool failed = !plan.failure.empty() && contains(result.output, plan.failure);
  if (result.status == 0 && !failed) return {};
  return {.error = EIO,
          .problem = plan.helper + " failed with status " + std::to_string(result.status) + ": " +
                     said(plan, result.output)};
}

std::vector<std::string> environmentFor(const MountPlan& plan) {
  auto environment = currentEnvironment();
  setVariable(environment, "LC_ALL", "C");
  const passwd* user = ::getpwuid(::geteuid());
  if (variable(environment, "HOME", "").empty() && user) setVariable(environment, "HOME", user->pw_dir);
  for (const auto& name : plan.withheld) removeVariable(environment, name);
  for (const auto& [name, value] : plan.variables) setVariable(environment, name, value);
  return environment;
}

}  // namespace

MountOutcome runHelper(const MountPlan& plan, const Patience& patience) {
  const auto environment = environmentFor(plan);
  auto folders = splitSearchPath(variable(environment, "PATH", kUsualPath));
  folders.insert(folders.end(), kSystemCommands.begin(), kSystemCommands.end());
  const std::string program = findProgram(plan.helper, folders);
  if (program.empty()) return {.error = ENOENT, .problem = plan.helper + " is not installed"};
  const SettingsFile settings(plan.settings);
  if (!settings.problem().empty()) return {.error = EIO, .problem = settings.problem()};
  std::vector<std::string> arguments{plan.helper};
  for (auto argument : plan.arguments) {
    if (argument == kSettingsFile) argument = "conf=" + settings.path();
    arguments.push_back(argument);
  }
  return judge(plan, runToolWithInput({program, arguments, environment}, plan.input, patience));
}

}  // namespace corvane
