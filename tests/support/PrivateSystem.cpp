#include "tests/support/PrivateSystem.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <utility>

namespace corvane {
namespace {

namespace fs = std::filesystem;

bool isPrivate = false;

// The real /tmp serves as the place at which the new root is put together.
void buildRoot() {
  for (const auto& entry : fs::directory_iterator("/")) {
    const fs::path copy = "/tmp" / entry.path().relative_path();
    if (entry.is_symlink()) fs::copy_symlink(entry, copy);
    if (entry.is_symlink() || !entry.is_directory() || copy == "/tmp/tmp" || copy == "/tmp/Volumes") continue;
    fs::create_directory(copy);
    if (::mount(entry.path().c_str(), copy.c_str(), nullptr, MS_BIND | MS_REC, nullptr) != 0) std::abort();
  }
  for (const char* folder : {"/tmp/tmp", "/tmp/Volumes", "/tmp/scratch"}) {
    if (::mkdir(folder, 0755) != 0 || ::chmod(folder, 01777) != 0) std::abort();
  }
}

// Other users get at the build folder, although one of those above it may be closed to them.
void openTheWayTo(const fs::path& build) {
  fs::path closed;
  for (fs::path folder = build.parent_path(); folder != "/"; folder = folder.parent_path()) {
    if ((fs::status(folder).permissions() & fs::perms::others_exec) == fs::perms::none) closed = folder;
  }
  if (closed.empty()) return;
  const fs::path copy = "/tmp" / build.relative_path();
  const fs::path cover = "/tmp" / closed.relative_path();
  if (::mount("tmpfs", cover.c_str(), "tmpfs", 0, "mode=755") != 0) std::abort();
  const mode_t mask = ::umask(022);
  fs::create_directories(copy);
  ::umask(mask);
  if (::mount(build.c_str(), copy.c_str(), nullptr, MS_BIND, nullptr) != 0) std::abort();
}

}  // namespace

void enterPrivateSystem(const std::string& needed) {
  if (needed.starts_with("/tmp/") || ::unshare(CLONE_NEWNS) != 0) return;
  if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return;
  if (::mount("tmpfs", "/tmp", "tmpfs", 0, "mode=755") != 0) return;
  buildRoot();
  openTheWayTo(fs::path(needed).parent_path().parent_path());
  isPrivate = ::chroot("/tmp") == 0 && ::chdir("/") == 0 && ::setenv("TMPDIR", "/scratch", 1) == 0;
}

bool isPrivateSystem() { return isPrivate; }

Volume::Volume(std::string path) : path_(std::move(path)) {
  EXPECT_EQ(::mount("tmpfs", path_.c_str(), "tmpfs", 0, "mode=777"), 0) << path_;
}

Volume::~Volume() { ::umount2(path_.c_str(), MNT_DETACH); }

void Volume::leaveFree(unsigned long bytes, unsigned long entries) const {
  struct statvfs now {};
  ASSERT_EQ(::statvfs(path_.c_str(), &now), 0);
  const auto size = (now.f_blocks - now.f_bfree) * now.f_frsize + bytes;
  const auto data = "size=" + std::to_string(size + (size == 0 ? now.f_frsize : 0)) +
                    ",nr_inodes=" + std::to_string(now.f_files - now.f_ffree + entries);
  ASSERT_EQ(::mount(nullptr, path_.c_str(), nullptr, MS_REMOUNT, data.c_str()), 0) << data;
}

}  // namespace corvane
