#include "app/Leftovers.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "process/Log.h"
#include "recipes/Staging.h"

namespace corvane {
namespace {

constexpr const char* kUnfinishedArchive = ".ditto-";  // as our `ditto` calls it until it is complete

bool isLetterOrDigit(char character) {
  return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'z') ||
         (character >= 'A' && character <= 'Z');
}

bool holdsALetter(std::string_view text) { return std::any_of(text.begin(), text.end(), isLetterOrDigit); }

// A date and nothing else would be the name of too much that is not ours.
std::optional<WorkName> archiveName(const std::string& folder, const std::string& name) {
  const auto command = name.find('`');
  if (command == std::string::npos) return WorkName{folder, name};
  const std::string end = name.substr(name.rfind('`') + 1);
  const std::string begin = name.substr(0, command);
  if (!holdsALetter(begin) && !holdsALetter(end.substr(0, end.rfind('.')))) return std::nullopt;
  return WorkName{folder, begin, end, Between::date};
}

WorkName halfWritten(const std::string& path) {
  const auto slash = path.find_last_of('/');
  return {path.substr(0, slash),
          path.substr(slash + 1) + ".",
          "",
          Between::sixCharacters,
          EntryKind::file,
          false};
}

bool fits(Between between, std::string_view text) {
  const auto all = [&](auto isOne) { return std::all_of(text.begin(), text.end(), isOne); };
  switch (between) {
    case Between::date:
      return !text.empty() && all([](char one) { return one == '-' || isLetterOrDigit(one); });
    case Between::sixCharacters:
      return text.size() == 6 && all(isLetterOrDigit);
    case Between::sixteenDigits:
      return text.size() == 16 && text.find_first_not_of("0123456789abcdef") == std::string_view::npos;
    case Between::nothing:
      break;
  }
  return text.empty();
}

bool matches(const WorkName& work, std::string_view name) {
  if (name.size() < work.prefix.size() + work.suffix.size()) return false;
  if (!name.starts_with(work.prefix) || !name.ends_with(work.suffix)) return false;
  name.remove_prefix(work.prefix.size());
  name.remove_suffix(work.suffix.size());
  return fits(work.between, name);
}

const char* obstacle(const Entry& entry, EntryKind wanted) {
  if (entry.kind == EntryKind::link) return "it is a link";
  if (!entry.isOurs) return "it belongs to another user";
  if (entry.kind != wanted) return "something else has its name";
  return nullptr;
}

// Others choose names in /tmp; the log gets no line of theirs.
std::string inOneLine(std::string path) {
  std::replace_if(
      path.begin(), path.end(), [](char one) { return one == '\n' || one == '\r'; }, '?');
  return path;
}

bool clear(const WorkName& work, const std::string& path, bool isAlone) {
  const Entry entry = entryAt(path);
  const char* problem = obstacle(entry, work.kind);
  if (!problem && !isAlone) problem = "another backup may be at work there";
  if (!problem) {
    log("Removing what an earlier backup left behind: " + inOneLine(path));
    if (removeTree(path)) return true;
    problem = "it cannot be removed";
  }
  if (entry.kind == EntryKind::none || !work.isUsed) return true;
  log("cannot use " + inOneLine(path) + ": " + problem);
  return false;
}

}  // namespace

std::vector<WorkName> workNames(const RunRecord& record, const std::string& destination,
                                const std::string& supportFolder) {
  const std::string base = baseFolder(record, destination);
  std::vector<WorkName> names{{base, std::string(kStagingName), "", Between::nothing, EntryKind::folder},
                              {base, std::string(kArchiveInProgress)},
                              {base, kUnfinishedArchive, "", Between::sixteenDigits, EntryKind::file, false},
                              halfWritten(supportFolder + ".corvane.sh")};
  for (const auto& archive : record.copiedArchives) {
    if (const auto name = archiveName(base, archive)) names.push_back(*name);
  }
  for (const auto& manifest : record.manifests) names.push_back(halfWritten(manifest.path));
  return names;
}

bool clearLeftovers(const std::vector<WorkName>& names, bool isAlone) {
  bool areFree = true;
  for (const auto& work : names) {
    for (const auto& name : entryNames(work.folder)) {
      if (matches(work, name) && !clear(work, work.folder + "/" + name, isAlone)) areFree = false;
    }
  }
  return areFree;
}

}  // namespace corvane
