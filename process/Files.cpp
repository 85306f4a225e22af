#include "process/Files.h"

#include <dirent.h>
#include <fcntl.h>
#include <ftw.h>
#include <sys/stat.h>
#include <unistd.h>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "process/TemporaryNames.h"

namespace corvane {
namespace {

struct Descriptor {
  explicit Descriptor(int opened) : number(opened) {}
  ~Descriptor() {
    if (number >= 0) ::close(number);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  const int number;
};

bool readAll(int file, std::string& bytes) {
  std::size_t filled = 0;
  while (filled < bytes.size()) {
    const ssize_t count = ::read(file, bytes.data() + filled, bytes.size() - filled);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    if (count == 0) break;
    filled += static_cast<std::size_t>(count);
  }
  bytes.resize(filled);
  return true;
}

// Goes on whatever happens: what can be removed is removed.
int removeEntry(const char* path, const struct stat*, int, FTW*) {
  ::remove(path);
  return 0;
}

}  // namespace

std::string errnoSentence(std::string_view verb, const std::string& path) {
  const int cause = errno;
  return "cannot " + std::string(verb) + " " + path + ": " + std::strerror(cause);
}

bool fileExists(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0;
}

bool isFolder(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::optional<std::vector<std::string>> entryNames(const std::string& path) {
  DIR* folder = ::opendir(path.c_str());
  if (!folder) return std::nullopt;
  std::vector<std::string> names;
  errno = 0;
  while (const dirent* entry = ::readdir(folder)) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
    errno = 0;
  }
  const int cause = errno;
  ::closedir(folder);
  errno = cause;
  if (cause != 0) return std::nullopt;
  return names;
}

bool folderHasEntries(const std::string& path) {
  const auto names = entryNames(path);
  return names && !names->empty();
}

Entry entryAt(const std::string& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) {
    const bool canBeNone = errno == ENOENT || errno == ENOTDIR || errno == ENAMETOOLONG;
    return {canBeNone ? EntryKind::none : EntryKind::unknown};
  }
  Entry entry{EntryKind::other, status.st_uid == ::geteuid()};
  if (S_ISREG(status.st_mode)) entry.kind = EntryKind::file;
  if (S_ISDIR(status.st_mode)) entry.kind = EntryKind::folder;
  if (S_ISLNK(status.st_mode)) entry.kind = EntryKind::link;
  return entry;
}

bool hasOwnerOfNewFiles(const std::string& path) {
  struct stat old {};
  struct stat fresh {};
  std::string sample = path.substr(0, path.find_last_of('/') + 1) + kOwnerSample + "XXXXXX";
  const Descriptor file(::mkstemp(sample.data()));
  if (file.number < 0) return false;
  const bool areKnown = ::fstat(file.number, &fresh) == 0 && ::lstat(path.c_str(), &old) == 0;
  ::unlink(sample.c_str());
  return areKnown && fresh.st_uid == old.st_uid;
}

std::optional<std::string> readFile(const std::string& path, std::size_t limit, std::string& problem) {
  // Non-blocking, so that opening a named pipe does not wait for a writer.
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  struct stat status {};
  if (file.number < 0 || ::fstat(file.number, &status) != 0) {
    problem = errnoSentence("read", path);
    return std::nullopt;
  }
  if (!S_ISREG(status.st_mode)) {
    problem = "cannot read " + path + ": it is not a file";
    return std::nullopt;
  }
  std::string bytes(limit + 1, '\0');
  if (!readAll(file.number, bytes)) {
    problem = errnoSentence("read", path);
    return std::nullopt;
  }
  if (bytes.size() > limit) {
    problem = "cannot read " + path + ": it is larger than " + std::to_string(limit) + " bytes";
    return std::nullopt;
  }
  return bytes;
}

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

bool writeFileAtomically(const std::string& path, std::string_view bytes, std::string& problem) {
  std::string temporary = path + kNewFile + "XXXXXX";
  const Descriptor file(::mkstemp(temporary.data()));
  if (file.number < 0) {
    problem = errnoSentence("write", path);
    return false;
  }
  if (writeAll(file.number, bytes) && ::fsync(file.number) == 0 &&
      ::rename(temporary.c_str(), path.c_str()) == 0) {
    return true;
  }
  problem = errnoSentence("write", path);
  ::unlink(temporary.c_str());
  return false;
}

bool makeFolders(const std::string& path) {
  if (path.empty() || isFolder(path)) return true;
  const auto slash = path.find_last_of('/');
  if (slash != std::string::npos && slash > 0) makeFolders(path.substr(0, slash));
  return ::mkdir(path.c_str(), 0700) == 0 || isFolder(path);
}

bool removeFile(const std::string& path) { return ::unlink(path.c_str()) == 0 || errno == ENOENT; }

bool removeTree(const std::string& path) {
  constexpr int kOpenFolders = 32;
  // Some systems' nftw follows a link at the top, and a slash at the end makes any system follow it.
  if (path.empty() || path.ends_with('/')) return false;
  if (entryAt(path).kind != EntryKind::folder) return removeFile(path);
  ::nftw(path.c_str(), removeEntry, kOpenFolders, FTW_DEPTH | FTW_PHYS | FTW_MOUNT);
  struct stat status {};
  return ::lstat(path.c_str(), &status) != 0 && errno == ENOENT;
}

}  // namespace corvane
