#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <vector>

#include "platform/HomeDirectory.h"
#include "platform/Trash.h"
#include "process/Files.h"
#include "process/PercentEncoding.h"

// The layout is that of the freedesktop.org Trash, version 1.0: what was thrown away in "files", and beside
// it, in "info", one small file each that says where it came from and when.

namespace corvane {
namespace {

constexpr int kMostNames = 10000;

struct Trash {
  std::string folder;
  std::string originalPath;  // as this Trash records it: absolute at home, below the volume elsewhere
};

std::string parentOf(const std::string& path) { return path.substr(0, path.find_last_of('/')); }
std::string nameOf(const std::string& path) { return path.substr(path.find_last_of('/') + 1); }

std::string infoFor(const std::string& originalPath) {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  ::localtime_r(&now, &local);
  char date[32] = "";
  std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &local);
  return "[Trash Info]\nPath=" + percentEncoded(originalPath, "/") + "\nDeletionDate=" + date + "\n";
}

// Writes a file that is not there yet, whole or not at all. False with errno EEXIST when it is there.
bool writeNewFile(const std::string& path, const std::string& bytes) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (file < 0) return false;
  const bool written = writeAll(file, bytes);
  const int problem = errno;
  ::close(file);
  if (written) return true;
  ::unlink(path.c_str());
  errno = problem;
  return false;
}

bool isTaken(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0;
}

// Reserves a name in `trash` by its info file, as other programs do. Nothing, and errno, when that fails.
std::optional<std::string> reserveName(const Trash& trash, const std::string& wanted) {
  const std::string info = infoFor(trash.originalPath);
  for (int number = 1; number <= kMostNames; ++number) {
    const std::string name = number == 1 ? wanted : wanted + "." + std::to_string(number);
    if (isTaken(trash.folder + "/files/" + name)) continue;
    if (writeNewFile(trash.folder + "/info/" + name + ".trashinfo", info)) return name;
    if (errno != EEXIST) return std::nullopt;
  }
  errno = EEXIST;
  return std::nullopt;
}

// False and errno when it fails, EXDEV when `trash` is on another volume.
bool moveInto(const Trash& trash, const std::string& path) {
  makeFolders(trash.folder + "/files");
  makeFolders(trash.folder + "/info");
  const auto name = reserveName(trash, nameOf(path));
  if (!name) return false;
  if (::rename(path.c_str(), (trash.folder + "/files/" + *name).c_str()) == 0) return true;
  const int cause = errno;
  ::unlink((trash.folder + "/info/" + *name + ".trashinfo").c_str());
  errno = cause;
  return false;
}

Trash homeTrash(const std::string& path) {
  const char* data = std::getenv("XDG_DATA_HOME");
  const bool isSet = data && *data == '/';
  return {(isSet ? data : getHomeDirectory() + "/.local/share") + std::string("/Trash"), path};
}

// The topmost folder on the volume of `folder`, which has no links in it; without a slash at its end.
std::string topOf(std::string folder) {
  struct stat own {};
  struct stat above {};
  if (::lstat(folder.c_str(), &own) != 0) return folder;
  while (!folder.empty()) {
    const std::string parent = parentOf(folder);
    if (::lstat((parent + "/").c_str(), &above) != 0 || above.st_dev != own.st_dev) break;
    folder = parent;
  }
  return folder;
}

// The places on the volume of `path`, best first. An administrator may have made one folder for all users,
// which has to be sticky to be trusted.
std::vector<Trash> volumeTrashes(const std::string& path) {
  char* resolved = ::realpath(parentOf(path).c_str(), nullptr);
  const std::string folder = resolved ? resolved : parentOf(path);
  std::free(resolved);
  const std::string top = topOf(folder);
  const std::string user = std::to_string(::getuid());
  const std::string original = (folder + "/" + nameOf(path)).substr(top.size() + 1);
  struct stat shared {};
  std::vector<Trash> trashes;
  if (::lstat((top + "/.Trash").c_str(), &shared) == 0 && S_ISDIR(shared.st_mode) &&
      (shared.st_mode & S_ISVTX) != 0) {
    trashes.push_back({top + "/.Trash/" + user, original});
  }
  trashes.push_back({top + "/.Trash-" + user, original});
  return trashes;
}

// Whoever else can write to the volume may have put a link, or a folder of his own, where ours is to be.
bool makeOwnFolder(const std::string& path) {
  makeFolders(path);
  const Entry entry = entryAt(path);
  if (entry.kind == EntryKind::folder && entry.isOurs) return true;
  errno = EACCES;
  return false;
}

bool moveWithinVolume(const std::string& path) {
  const auto trashes = volumeTrashes(path);
  return std::any_of(trashes.begin(), trashes.end(), [&](const Trash& trash) {
    return makeOwnFolder(trash.folder) && moveInto(trash, path);
  });
}

}  // namespace

bool moveToTrash(const std::string& path, std::string& problem) {
  if (moveInto(homeTrash(path), path)) return true;
  if (errno == EXDEV && moveWithinVolume(path)) return true;
  problem = errnoSentence("move to the Trash", path);
  return false;
}

}  // namespace corvane
