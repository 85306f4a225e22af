// Small operations on files and folders. Paths are absolute, in UTF-8.
// Where there is a `problem`, it describes every failure as one English sentence that names the file.
// Thread: any.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Links are followed; false also when it cannot be found out.
[[nodiscard]] bool fileExists(const std::string& path);
[[nodiscard]] bool isFolder(const std::string& path);

/// True when `path` is a folder that lists at least one entry.
[[nodiscard]] bool folderHasEntries(const std::string& path);

/// The names of what is in a folder, hidden entries too, in no order. Nothing, and `errno`, when it cannot be
/// listed.
[[nodiscard]] std::optional<std::vector<std::string>> entryNames(const std::string& folder);

enum class EntryKind { none, file, folder, link, other, unknown };

/// What a path names itself; a link is not followed.
struct Entry {
  EntryKind kind = EntryKind::none;  ///< unknown when it cannot be found out
  bool isOurs = false;               ///< belongs to the user as whom this program runs
};
[[nodiscard]] Entry entryAt(const std::string& path);

/// Whether the entry has the owner that a new file of ours gets in its folder: on volumes that keep no
/// owners, or map them, that is another than the user. Makes a file there for a moment.
[[nodiscard]] bool hasOwnerOfNewFiles(const std::string& path);

/// The bytes of a regular file of at most `limit` bytes. Nothing, and the cause, when it is missing, not a
/// regular file (a pipe would be waited for), larger, or cannot be read.
[[nodiscard]] std::optional<std::string> readFile(const std::string& path, std::size_t limit,
                                                  std::string& problem);

/// Writes `bytes` to an open file, pipe or terminal. False, and `errno`, when not all could be written.
bool writeAll(int descriptor, std::string_view bytes);

/// Replaces the file at `path` by one holding `bytes`, readable and writable by its owner only: all of it or
/// nothing. On failure false, the cause, and the file that was there before.
[[nodiscard]] bool writeFileAtomically(const std::string& path, std::string_view bytes, std::string& problem);

/// Makes a folder and those above it, for their owner only; true when it is there afterwards.
bool makeFolders(const std::string& path);

/// Removes a file or link; true when nothing is there afterwards.
bool removeFile(const std::string& path);

/// Removes a folder with all that is in it, or a file. Links are removed, never followed, and what is mounted
/// inside is left alone. True when nothing is there afterwards; a path that ends with a slash is refused.
bool removeTree(const std::string& path);

/// "cannot VERB PATH: CAUSE" for the current errno.
[[nodiscard]] std::string errnoSentence(std::string_view verb, const std::string& path);

}  // namespace corvane
