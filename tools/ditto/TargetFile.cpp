#include "tools/ditto/TargetFile.h"

#include <fcntl.h>
#include <sys/random.h>
#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "process/TemporaryNames.h"

namespace corvane::ditto {
namespace {

constexpr std::size_t kNameSize = 32;
constexpr off_t kFlushedTogether = off_t{1} << 23;

// What the signal handler needs. Changed only while the signals are held back.
volatile sig_atomic_t temporaryFolder = -1;
char temporaryInFolder[kNameSize];

sigset_t endingSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : kEndingSignals) sigaddset(&signals, signal);
  return signals;
}

extern "C" void removeTemporaryAndEnd(int signal) {
  if (temporaryFolder >= 0) ::unlinkat(temporaryFolder, temporaryInFolder, 0);
  // The handler is in force once only: this one, delivered on return, ends the program.
  ::raise(signal);
}

bool randomName(std::string& name) {
  std::uint64_t number = 0;
  if (::getrandom(&number, sizeof number, 0) != sizeof number) return false;
  char text[kNameSize];
  std::snprintf(text, sizeof text, "%s%016llx", kUnfinishedArchive, static_cast<unsigned long long>(number));
  name = text;
  return true;
}

// Some file systems have nothing to flush and say so.
bool flush(int file) { return ::fsync(file) == 0 || errno == EINVAL || errno == ENOTSUP || errno == EBADF; }

}  // namespace

SignalsHeldBack::SignalsHeldBack() {
  const sigset_t signals = endingSignals();
  ::pthread_sigmask(SIG_BLOCK, &signals, &before_);
}

SignalsHeldBack::~SignalsHeldBack() {
  const int problem = errno;
  ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  errno = problem;
}

void removeTemporaryOnSignals() {
  for (const int signal : kEndingSignals) {
    struct sigaction action {};
    if (::sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
    action.sa_handler = removeTemporaryAndEnd;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    action.sa_mask = endingSignals();
    ::sigaction(signal, &action, nullptr);
  }
}

TargetFile::TargetFile(int folder, std::string name) : folder_(folder), name_(std::move(name)) {
  struct stat status {};
  if (::fstat(folder, &status) == 0) folderIdentity_ = FileIdentity(status);
}

TargetFile::~TargetFile() {
  if (temporary_.empty()) return;
  const SignalsHeldBack heldBack;
  ::unlinkat(folder_, temporary_.c_str(), 0);
  temporaryFolder = -1;
}

template <typename Make>
bool TargetFile::make(Make attempt) {
  struct stat there {};
  if (statusThere(there) && !S_ISREG(there.st_mode) && !S_ISLNK(there.st_mode)) {
    errno = S_ISDIR(there.st_mode) ? EISDIR : EEXIST;
    return false;
  }
  std::string name;
  while (randomName(name)) {
    const SignalsHeldBack heldBack;
    if (attempt(name.c_str())) {
      temporary_ = name;
      std::memcpy(temporaryInFolder, name.c_str(), name.size() + 1);
      temporaryFolder = folder_;
      return true;
    }
    if (errno != EEXIST) return false;
  }
  return false;
}

bool TargetFile::create() {
  return make([this](const char* name) {
    constexpr int kNewFile = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    file_ = Descriptor(::openat(folder_, name, kNewFile, S_IRUSR | S_IWUSR));
    return file_.isOpen();
  });
}

bool TargetFile::createLink(const std::string& target) {
  return make([&](const char* name) { return ::symlinkat(target.c_str(), folder_, name) == 0; });
}

bool TargetFile::write(std::span<const char> bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(file_.get(), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(count));
    written_ += count;
  }
  // All at once at the end, the flush would take its time, and hear no signal.
  if (written_ - onItsWay_ >= kFlushedTogether) {
    ::sync_file_range(file_.get(), onItsWay_, written_ - onItsWay_, SYNC_FILE_RANGE_WRITE);
    onItsWay_ = written_;
  }
  return true;
}

bool TargetFile::rewrite(off_t position, std::span<const char> bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::pwrite(file_.get(), bytes.data(), bytes.size(), position);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(count));
    position += count;
  }
  return true;
}

bool TargetFile::putInPlace() {
  if (file_.isOpen() && !flush(file_.get())) return false;
  const SignalsHeldBack heldBack;
  if (::renameat(folder_, temporary_.c_str(), folder_, name_.c_str()) != 0) return false;
  forgetTemporary();
  return true;
}

// As long as the earlier one is there under the temporary name, it can be put back.
bool TargetFile::putInPlaceForGood() {
  if (!flush(file_.get())) return false;
  const SignalsHeldBack heldBack;
  if (!exchangeNames()) return putInPlace() && flush(folder_);
  if (flush(folder_) && ::unlinkat(folder_, temporary_.c_str(), 0) == 0) {
    forgetTemporary();
    return true;
  }
  const int problem = errno;
  if (!exchangeNames()) forgetTemporary();  // which is the earlier one's name now
  errno = problem;
  return false;
}

bool TargetFile::exchangeNames() const {
  return ::renameat2(folder_, temporary_.c_str(), folder_, name_.c_str(), RENAME_EXCHANGE) == 0;
}

void TargetFile::forgetTemporary() {
  temporaryFolder = -1;
  temporary_.clear();
}

bool TargetFile::statusThere(struct stat& status) const {
  return ::fstatat(folder_, name_.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

bool TargetFile::wouldReplace(const FileIdentity& file) const {
  struct stat there {};
  return statusThere(there) && FileIdentity(there) == file;
}

bool TargetFile::isNamed(const FileIdentity& folder, const std::string& name) const {
  return folder == folderIdentity_ && (name == name_ || name == temporary_);
}

bool TargetPlace::flushName() const { return flush(folder.get()); }

TargetPlace::TargetPlace(const std::string& path) {
  const auto slash = path.rfind('/');
  name = slash == std::string::npos ? path : path.substr(slash + 1);
  struct stat status {};
  const bool isFolder = ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
  if (isFolder || name.empty()) {
    errno = isFolder ? EISDIR : ENOTDIR;
    return;
  }
  const std::string around = slash == std::string::npos ? "." : path.substr(0, slash + 1);
  folder = Descriptor(::open(around.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

}  // namespace corvane::ditto
