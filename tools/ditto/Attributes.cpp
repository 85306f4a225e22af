#include "tools/ditto/Attributes.h"

#include <fcntl.h>
#include <sys/statvfs.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <vector>

namespace corvane::ditto {
namespace {

constexpr std::size_t kLargest = 65536;  // of a value, and of the list of names: the system's own limits

// No failure: nothing is lost that could have been kept.
bool isBeyondUs(int problem) { return problem == EPERM || problem == ENOTSUP || problem == ENOSYS; }

// The file system's room for attributes is smaller than that of the one it comes from; not the disk.
bool isTooLarge(int file, int problem) {
  struct statvfs system {};
  const bool isFull = ::fstatvfs(file, &system) == 0 && (system.f_bavail == 0 || system.f_favail == 0);
  return problem == E2BIG || problem == ERANGE || (problem == ENOSPC && !isFull);
}

bool succeeded(int result) { return result == 0 || isBeyondUs(errno); }

bool isWanted(std::string_view name, const KeptAttributes& kept) {
  return name.starts_with("system.posix_acl") ? kept.accessControlLists : kept.extended;
}

bool copyExtended(int from, const char* name, int to, std::vector<char>& value) {
  const ssize_t size = ::fgetxattr(from, name, value.data(), value.size());
  if (size < 0) return errno == ENODATA || isBeyondUs(errno);
  return succeeded(::fsetxattr(to, name, value.data(), static_cast<std::size_t>(size), 0)) ||
         isTooLarge(to, errno);
}

bool copyExtended(int from, int to, const KeptAttributes& kept) {
  if (!kept.extended && !kept.accessControlLists) return true;
  const ssize_t any = ::flistxattr(from, nullptr, 0);
  if (any <= 0) return any == 0 || isBeyondUs(errno);
  std::vector<char> names(kLargest);
  std::vector<char> value(kLargest);
  const ssize_t size = ::flistxattr(from, names.data(), names.size());
  if (size < 0) return false;
  for (const char* name = names.data(); name < names.data() + size; name += std::strlen(name) + 1) {
    if (isWanted(name, kept) && !copyExtended(from, name, to, value)) return false;
  }
  return true;
}

std::array<struct timespec, 2> timesOf(const struct stat& status) { return {status.st_atim, status.st_mtim}; }

// The owner comes first, since a change of owner takes permissions away; so does a failed one here: a program
// that ran as somebody else must not run as whoever copied it.
bool setOwnerAndMode(int file, const struct stat& wanted) {
  if (::fchown(file, wanted.st_uid, wanted.st_gid) != 0) {
    const bool groupOnly = ::fchown(file, static_cast<uid_t>(-1), wanted.st_gid) == 0;
    if (!groupOnly && !isBeyondUs(errno) && errno != EINVAL) return false;  // unknown to a name space
  }
  struct stat now {};
  if (::fstat(file, &now) != 0) return false;
  mode_t mode = wanted.st_mode & ALLPERMS;
  if (now.st_uid != wanted.st_uid) mode &= ~static_cast<mode_t>(S_ISUID);
  if (now.st_gid != wanted.st_gid) mode &= ~static_cast<mode_t>(S_ISGID);
  return succeeded(::fchmod(file, mode));
}

}  // namespace

bool copyAttributes(int from, const struct stat& status, int to, const KeptAttributes& kept) {
  // The mode after the attributes, which cannot be set on what must not be written; the times last of all.
  return copyExtended(from, to, kept) && setOwnerAndMode(to, status) &&
         succeeded(::futimens(to, timesOf(status).data()));
}

bool setLinkAttributes(int folder, const char* name, const struct stat& status) {
  return succeeded(::fchownat(folder, name, status.st_uid, status.st_gid, AT_SYMLINK_NOFOLLOW)) &&
         succeeded(::utimensat(folder, name, timesOf(status).data(), AT_SYMLINK_NOFOLLOW));
}

bool setLinkTime(int folder, const char* name, const struct timespec& changed) {
  const struct timespec times[] = {{0, UTIME_OMIT}, changed};
  return succeeded(::utimensat(folder, name, times, AT_SYMLINK_NOFOLLOW));
}

bool setModeAndTime(int file, mode_t mode, const struct timespec& changed) {
  const struct timespec times[] = {{0, UTIME_OMIT}, changed};
  return succeeded(::fchmod(file, mode & ACCESSPERMS)) && succeeded(::futimens(file, times));
}

}  // namespace corvane::ditto
