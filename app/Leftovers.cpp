#include "app/Leftovers.h"

#include <string_view>

#include "process/Log.h"
#include "recipes/Staging.h"

namespace corvane {
namespace {

constexpr const char* kUnfinishedArchive = ".ditto-";  // as our `ditto` calls it until it is complete

// The date in a name is a command: what the shell will make of it can be anything.
WorkName archiveName(const std::string& folder, const std::string& name) {
  const auto command = name.find('`');
  if (command == std::string::npos) return {folder, name, std::nullopt};
  return {folder, name.substr(0, command), name.substr(name.rfind('`') + 1)};
}

WorkName halfWritten(const std::string& path) {
  const auto slash = path.find_last_of('/');
  return {path.substr(0, slash), path.substr(slash + 1) + ".", "", EntryKind::file, false};
}

bool matches(const WorkName& work, std::string_view name) {
  if (!work.suffix) return name == work.prefix;
  return name.size() >= work.prefix.size() + work.suffix->size() && name.starts_with(work.prefix) &&
         name.ends_with(*work.suffix);
}

const char* obstacle(const Entry& entry, EntryKind wanted) {
  if (entry.kind == EntryKind::link) return "it is a link";
  if (!entry.isOurs) return "it belongs to another user";
  if (entry.kind != wanted) return "something else has its name";
  return nullptr;
}

bool clear(const WorkName& work, const std::string& path) {
  const Entry entry = entryAt(path);
  const char* problem = obstacle(entry, work.kind);
  if (!problem) {
    log("Removing what an earlier backup left behind: " + path);
    if (removeTree(path)) return true;
    problem = "it cannot be removed";
  }
  if (entry.kind == EntryKind::none || !work.isUsed) return true;
  log("cannot use " + path + ": " + problem);
  return false;
}

}  // namespace

std::vector<WorkName> workNames(const RunRecord& record, const std::string& destination,
                                const std::string& supportFolder) {
  const std::string base = baseFolder(record, destination);
  std::vector<WorkName> names{{base, std::string(kStagingName), std::nullopt, EntryKind::folder},
                              {base, std::string(kArchiveInProgress), std::nullopt},
                              {base, kUnfinishedArchive, "", EntryKind::file, false},
                              halfWritten(supportFolder + ".corvane.sh")};
  for (const auto& archive : record.copiedArchives) names.push_back(archiveName(base, archive));
  for (const auto& manifest : record.manifests) names.push_back(halfWritten(manifest.path));
  return names;
}

bool clearLeftovers(const std::vector<WorkName>& names) {
  bool areFree = true;
  for (const auto& work : names) {
    for (const auto& name : entryNames(work.folder)) {
      if (matches(work, name) && !clear(work, work.folder + "/" + name)) areFree = false;
    }
  }
  return areFree;
}

}  // namespace corvane
