#include "tools/osascript/ProcessList.h"

#include <dirent.h>
#include <unistd.h>
#include <algorithm>
#include <climits>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "tools/osascript/Names.h"

namespace corvane::osascript {
namespace {

constexpr std::size_t kLongestCommandName = 15;  // the system cuts off what is longer

struct Process {
  pid_t parent = 0;
  uid_t user = 0;
  std::vector<std::string> names;
};

std::string pathOf(pid_t pid, const char* file) { return "/proc/" + std::to_string(pid) + "/" + file; }

// Arguments can be megabytes; what matters stands at the beginning.
std::string beginningOf(const std::string& path) {
  std::string bytes(8192, '\0');
  std::ifstream file(path, std::ios::binary);
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(file.gcount()));
  return bytes;
}

std::string_view baseName(std::string_view path) { return path.substr(path.find_last_of('/') + 1); }

// The number that follows `label` in the text of a status file; 0 when there is none.
unsigned long numberAfter(const std::string& status, const char* label) {
  const auto at = status.find(label);
  return at == std::string::npos
             ? 0
             : std::strtoul(status.c_str() + at + std::string_view(label).size(), nullptr, 10);
}

std::string executableName(pid_t pid) {
  char target[PATH_MAX];
  const ssize_t size = ::readlink(pathOf(pid, "exe").c_str(), target, sizeof target);
  std::string_view path(target, size < 0 ? 0 : static_cast<std::size_t>(size));
  constexpr std::string_view kReplaced = " (deleted)";  // by a newer version, say
  if (path.ends_with(kReplaced)) path.remove_suffix(kReplaced.size());
  return std::string(baseName(path));
}

// A name that was cut off is completed from the arguments: the program, or the script that it reads.
std::string commandName(pid_t pid, std::string_view arguments) {
  std::string name = beginningOf(pathOf(pid, "comm"));
  if (name.ends_with('\n')) name.pop_back();
  if (name.size() < kLongestCommandName) return name;
  for (int count = 0; count < 2 && !arguments.empty(); ++count) {
    const auto argument = arguments.substr(0, arguments.find('\0'));
    if (baseName(argument).starts_with(name)) return std::string(baseName(argument));
    arguments.remove_prefix(std::min(argument.size() + 1, arguments.size()));
  }
  return {};
}

// Nothing for a process that has ended or is the system's own: neither has arguments.
std::optional<Process> readProcess(pid_t pid) {
  const std::string arguments = beginningOf(pathOf(pid, "cmdline"));
  if (arguments.empty()) return std::nullopt;
  const std::string status = beginningOf(pathOf(pid, "status"));
  return Process{static_cast<pid_t>(numberAfter(status, "\nPPid:")),
                 static_cast<uid_t>(numberAfter(status, "\nUid:")),
                 {commandName(pid, arguments), executableName(pid)}};
}

std::vector<pid_t> allProcesses() {
  std::vector<pid_t> numbers;
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir("/proc"), ::closedir);
  while (const dirent* entry = folder ? ::readdir(folder.get()) : nullptr) {
    const int number = std::atoi(entry->d_name);
    if (number > 0) numbers.push_back(number);
  }
  return numbers;
}

std::set<pid_t> selfAndAncestors() {
  std::set<pid_t> spared{1};
  for (pid_t pid = ::getpid(); pid > 0 && spared.insert(pid).second;) {
    const auto process = readProcess(pid);
    pid = process ? process->parent : 0;
  }
  return spared;
}

}  // namespace

std::vector<pid_t> processesOf(std::string_view application) {
  const auto spared = selfAndAncestors();
  std::vector<pid_t> found;
  for (const pid_t pid : allProcesses()) {
    const auto process = spared.contains(pid) ? std::nullopt : readProcess(pid);
    if (!process || process->user != ::getuid()) continue;
    const auto isWanted = [&](const std::string& name) { return isSameName(application, name); };
    if (std::any_of(process->names.begin(), process->names.end(), isWanted)) found.push_back(pid);
  }
  return found;
}

}  // namespace corvane::osascript
