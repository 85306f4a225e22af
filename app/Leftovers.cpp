#include "app/Leftovers.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "process/Log.h"
#include "process/TemporaryNames.h"
#include "recipes/Staging.h"

namespace corvane {
namespace {

constexpr auto npos = std::string_view::npos;

bool isLetterOrDigit(char character) {
  return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'z') ||
         (character >= 'A' && character <= 'Z');
}

bool isAscii(char character) { return static_cast<unsigned char>(character) < 0x80; }

bool holdsALetter(std::string_view text) {
  return std::any_of(text.begin(), text.end(),
                     [](char one) { return isLetterOrDigit(one) || !isAscii(one); });
}

// Names of months hold other characters in other languages: "nov.", "Mär", " 1月", "C'hwe".
bool canBeOfADate(char character) {
  return !isAscii(character) || isLetterOrDigit(character) ||
         std::string_view("-.' ").find(character) != npos;
}

// Two digits for the day and four for the year, at least.
bool isLikelyDate(std::string_view text) {
  constexpr std::size_t kLongest = 32;
  const auto digits =
      std::count_if(text.begin(), text.end(), [](char one) { return one >= '0' && one <= '9'; });
  return digits >= 6 && text.size() <= kLongest && text.find("20") != npos && text.find(' ') == npos &&
         std::all_of(text.begin(), text.end(), canBeOfADate);
}

// None for what cannot be the name of an entry of the folder.
std::optional<WorkName> archiveName(const std::string& folder, const std::string& name) {
  const auto command = name.find('`');
  const std::string begin = name.substr(0, command);
  const std::string end = command == npos ? "" : name.substr(name.rfind('`') + 1);
  if ((begin + end).find('/') != npos || name.find_first_not_of('.') == npos) return std::nullopt;
  if (command == npos) return WorkName{folder, name};
  const bool isNamed = holdsALetter(begin) || holdsALetter(end.substr(0, end.rfind('.')));
  return WorkName{folder, begin, end, isNamed ? Between::date : Between::dateAlone};
}

// Whose name ends with six characters by which it differs from others, and which is in nobody's way.
WorkName temporaryFile(const std::string& beginning) {
  const auto slash = beginning.find_last_of('/');
  return {beginning.substr(0, slash),
          beginning.substr(slash + 1),
          "",
          Between::sixCharacters,
          EntryKind::file,
          false};
}

bool fits(Between between, std::string_view text) {
  const auto all = [&](auto isOne) { return std::all_of(text.begin(), text.end(), isOne); };
  switch (between) {
    case Between::date:
      return !text.empty() && all(canBeOfADate);
    case Between::dateAlone:
      return isLikelyDate(text);
    case Between::sixCharacters:
      return text.size() == 6 && all(isLetterOrDigit);
    case Between::sixteenDigits:
      return text.size() == 16 && text.find_first_not_of("0123456789abcdef") == npos;
    case Between::nothing:
      break;
  }
  return text.empty();
}

std::string_view textBetween(const WorkName& work, std::string_view name) {
  name.remove_prefix(work.prefix.size());
  name.remove_suffix(work.suffix.size());
  return name;
}

bool matches(const WorkName& work, std::string_view name) {
  return name.size() >= work.prefix.size() + work.suffix.size() && name.starts_with(work.prefix) &&
         name.ends_with(work.suffix) && fits(work.between, textBetween(work, name));
}

// What may stand at these names; nothing when it cannot be known. A single name needs no look into its
// folder, which may be closed to us.
std::optional<std::vector<std::string>> candidates(const WorkName& work) {
  if (work.between == Between::nothing) return std::vector{work.prefix};
  auto names = entryNames(work.folder);
  if (names) std::erase_if(*names, [&](const std::string& name) { return !matches(work, name); });
  return names;
}

// A user's own file can have a name like that of an archive, too.
bool mayBeRemoved(const WorkName& work, const std::string& name) {
  if (work.between == Between::dateAlone) return false;
  return work.between != Between::date || isLikelyDate(textBetween(work, name));
}

const char* obstacle(const std::string& path, const Entry& entry, EntryKind wanted) {
  if (entry.kind == EntryKind::unknown) return "it cannot be looked at";
  if (entry.kind == EntryKind::link) return "it is a link";
  if (!entry.isOurs && !hasOwnerOfNewFiles(path)) return "it belongs to another user";
  if (entry.kind != wanted) return "something else has its name";
  return nullptr;
}

// Others choose names in /tmp; the log gets no line of theirs.
std::string inOneLine(std::string path) {
  std::replace_if(
      path.begin(), path.end(), [](char one) { return one == '\n' || one == '\r'; }, '?');
  return path;
}

bool clear(const WorkName& work, const std::string& name, bool isAlone) {
  const std::string path = work.folder + "/" + name;
  const Entry entry = entryAt(path);
  if (entry.kind == EntryKind::none) return true;
  const char* problem = obstacle(path, entry, work.kind);
  if (!problem && !mayBeRemoved(work, name)) return true;
  if (!problem && !isAlone) problem = "another backup may be at work there";
  if (!problem) {
    log("Removing what an earlier backup left behind: " + inOneLine(path));
    if (removeTree(path)) return true;
    problem = "it cannot be removed";
  }
  if (!work.isUsed) return true;
  log("cannot use " + inOneLine(path) + ": " + problem);
  return false;
}

}  // namespace

std::vector<WorkName> workNames(const RunRecord& record, const std::string& destination,
                                const std::string& scriptPath) {
  const std::string base = baseFolder(record, destination);
  std::vector<WorkName> names{{base, std::string(kStagingName), "", Between::nothing, EntryKind::folder},
                              {base, std::string(kArchiveInProgress)},
                              {base, kUnfinishedArchive, "", Between::sixteenDigits, EntryKind::file, false},
                              temporaryFile(base + "/" + kOwnerSample),
                              temporaryFile(kMountSettings),
                              temporaryFile(scriptPath + kNewFile)};
  for (const auto& archive : record.copiedArchives) {
    if (const auto name = archiveName(base, archive)) names.push_back(*name);
  }
  for (const auto& manifest : record.manifests) names.push_back(temporaryFile(manifest.path + kNewFile));
  return names;
}

bool clearLeftovers(const std::vector<WorkName>& names, bool isAlone) {
  bool areFree = true;
  for (const auto& work : names) {
    const auto found = candidates(work);
    if (!found && work.isUsed) {
      log(errnoSentence("list", work.folder));
      areFree = false;
    }
    for (const auto& name : found.value_or(std::vector<std::string>{})) {
      if (!clear(work, name, isAlone)) areFree = false;
    }
  }
  return areFree;
}

void logIntruders(const std::vector<WorkName>& names) {
  for (const auto& work : names) {
    if (!work.isUsed) continue;
    for (const auto& name : candidates(work).value_or(std::vector<std::string>{})) {
      const std::string path = work.folder + "/" + name;
      const Entry entry = entryAt(path);
      const char* problem = entry.kind == EntryKind::none ? nullptr : obstacle(path, entry, work.kind);
      if (problem) log("cannot trust " + inOneLine(path) + ", where this backup was made: " + problem);
    }
  }
}

}  // namespace corvane
