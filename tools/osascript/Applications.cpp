#include "tools/osascript/Applications.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <set>

#include "process/Files.h"
#include "process/ProgramPath.h"
#include "tools/osascript/DesktopEntry.h"
#include "tools/osascript/Names.h"

namespace corvane::osascript {
namespace {

namespace fs = std::filesystem;

struct Candidate {
  std::string id;  // an entry hides those of the same id in folders that come later
  fs::path file;
};

// As `variable`, but an empty value counts as none.
std::string setting(const std::vector<std::string>& environment, const char* name,
                    const std::string& otherwise) {
  const std::string value = variable(environment, name, otherwise);
  return value.empty() ? otherwise : value;
}

std::vector<std::string> programFolders(const std::vector<std::string>& environment) {
  return splitSearchPath(setting(environment, "PATH", "/usr/bin:/bin"));
}

std::vector<std::string> dataFolders(const std::vector<std::string>& environment) {
  const std::string home = variable(environment, "HOME", "");
  std::vector<std::string> folders{setting(environment, "XDG_DATA_HOME", home + "/.local/share")};
  for (auto& folder : splitSearchPath(setting(environment, "XDG_DATA_DIRS", "/usr/local/share:/usr/share"))) {
    folders.push_back(std::move(folder));
  }
  std::erase_if(folders, [](const std::string& folder) { return !folder.starts_with('/'); });
  return folders;
}

// The entries below `folder` in the order of their ids.
std::vector<Candidate> entriesBelow(const fs::path& folder) {
  std::vector<Candidate> entries;
  std::error_code error;
  for (fs::recursive_directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
    if (at->path().extension() != ".desktop") continue;
    std::string id = at->path().lexically_relative(folder).string();
    std::replace(id.begin(), id.end(), '/', '-');
    entries.push_back({std::move(id), at->path()});
  }
  std::sort(entries.begin(), entries.end(),
            [](const auto& one, const auto& other) { return one.id < other.id; });
  return entries;
}

std::vector<Candidate> allEntries(const std::vector<std::string>& environment) {
  std::vector<Candidate> entries;
  std::set<std::string> seen;
  for (const auto& folder : dataFolders(environment)) {
    for (auto& entry : entriesBelow(fs::path(folder) / "applications")) {
      if (seen.insert(entry.id).second) entries.push_back(std::move(entry));
    }
  }
  return entries;
}

// How well the entry fits: smaller is better.
constexpr int kNoFit = 3;
int fitOf(const DesktopEntry& entry, const fs::path& file, std::string_view name) {
  const std::string names[] = {valueOf(entry, "Name"), file.stem().string(),
                               valueOf(entry, "StartupWMClass")};
  const auto* const first = std::find_if(std::begin(names), std::end(names),
                                         [&](const std::string& own) { return isSameName(name, own); });
  return static_cast<int>(first - std::begin(names));
}

std::string resolveProgram(const std::string& program, const std::vector<std::string>& environment) {
  const auto slash = program.find_last_of('/');
  if (slash == std::string::npos) return findProgram(program, programFolders(environment));
  return findProgram(program.substr(slash + 1), {program.substr(0, slash + 1)});
}

// An entry whose program is gone is what an uninstalled application leaves behind.
std::optional<Application> applicationOf(const DesktopEntry& entry,
                                         const std::vector<std::string>& environment) {
  const bool canStart = valueOf(entry, "Type") == "Application" && valueOf(entry, "Hidden") != "true" &&
                        valueOf(entry, "Terminal") != "true";
  auto arguments = canStart ? parseExec(valueOf(entry, "Exec")) : std::nullopt;
  if (!arguments) return std::nullopt;
  const std::string required = valueOf(entry, "TryExec");
  if (!required.empty() && resolveProgram(required, environment).empty()) return std::nullopt;
  std::string program = resolveProgram(arguments->front(), environment);
  if (program.empty()) return std::nullopt;
  return Application{{std::move(program), std::move(*arguments), environment}, valueOf(entry, "Path")};
}

std::optional<Application> findEntry(std::string_view name, const std::vector<std::string>& environment) {
  constexpr std::size_t kLargestEntry = 1 << 18;
  std::optional<Application> best;
  int bestFit = kNoFit;
  for (const auto& candidate : allEntries(environment)) {
    std::string problem;
    const auto text = readFile(candidate.file.string(), kLargestEntry, problem);
    if (!text) continue;
    const auto entry = parseDesktopEntry(*text);
    const int fit = fitOf(entry, candidate.file, name);
    auto application = fit < bestFit ? applicationOf(entry, environment) : std::nullopt;
    if (!application) continue;
    best = std::move(application);
    bestFit = fit;
  }
  return best;
}

}  // namespace

std::optional<Application> findApplication(std::string_view name,
                                           const std::vector<std::string>& environment) {
  if (auto application = findEntry(name, environment)) return application;
  std::string hyphenated = lowerCase(name);
  std::replace(hyphenated.begin(), hyphenated.end(), ' ', '-');
  std::string joined = lowerCase(name);
  std::erase(joined, ' ');
  for (const auto& program : {hyphenated, joined}) {
    std::string path = findProgram(program, programFolders(environment));
    if (!path.empty()) return Application{{std::move(path), {program}, environment}, {}};
  }
  return std::nullopt;
}

}  // namespace corvane::osascript
