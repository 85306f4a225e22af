#include "tools/ditto/FolderStack.h"

#include <fcntl.h>
#include <cerrno>
#include <string>

namespace corvane::ditto {
namespace {

constexpr std::size_t kOpenFolders = 16;
constexpr int kFolder = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

FileIdentity identityOf(int folder) {
  struct stat status {};
  return ::fstat(folder, &status) == 0 ? FileIdentity(status) : FileIdentity();
}

}  // namespace

FolderStack::FolderStack(Descriptor root) { push(std::move(root)); }

void FolderStack::push(Descriptor folder) {
  const FileIdentity identity = identityOf(folder.get());
  levels_.push_back({std::make_shared<const Descriptor>(std::move(folder)), identity});
  if (levels_.size() > kOpenFolders) levels_[levels_.size() - kOpenFolders].folder.reset();
}

bool FolderStack::pop() {
  Level& around = levels_[levels_.size() - 2];
  if (!around.folder) {
    Descriptor again(::openat(top(), "..", kFolder));
    if (!again.isOpen()) return false;
    if (identityOf(again.get()) != around.identity) {
      errno = ESTALE;
      return false;
    }
    around.folder = std::make_shared<const Descriptor>(std::move(again));
  }
  levels_.pop_back();
  return true;
}

Descriptor makeFolder(int parent, const char* name, mode_t mode) {
  if (::mkdirat(parent, name, mode) != 0 && errno != EEXIST) return Descriptor();
  Descriptor folder(::openat(parent, name, kFolder | O_NOFOLLOW));
  struct stat status {};
  if (folder.isOpen() && ::fstat(folder.get(), &status) == 0 && (status.st_mode & S_IRWXU) != S_IRWXU) {
    ::fchmod(folder.get(), (status.st_mode & ALLPERMS) | S_IRWXU);
  }
  return folder;
}

Descriptor makeFolders(const char* path, bool& isNew) {
  const std::string whole = path;
  isNew = false;
  for (auto end = whole.find_first_not_of('/'); end < whole.size();) {
    end = std::min(whole.find('/', end), whole.size());
    isNew = ::mkdir(whole.substr(0, end).c_str(), ACCESSPERMS) == 0;
    end = std::min(whole.find_first_not_of('/', end), whole.size());
  }
  return Descriptor(::open(path, kFolder));
}

}  // namespace corvane::ditto
