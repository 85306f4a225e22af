// Mounts that only this process and those it starts see. Needs Linux's mount namespaces.
// Thread: made while the process has only one.
#pragma once

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

namespace corvane {

class OwnMounts {
 public:
  OwnMounts() {
    static const bool entered = enterNamespace();
    if (!entered) problem_ = "no mounts of its own are allowed";
  }
  ~OwnMounts() {
    for (const auto& path : covered_) ::umount2(path.c_str(), MNT_DETACH);
  }

  /// Why there are none, as in a container without the right; the test is then to be skipped.
  [[nodiscard]] const std::string& problem() const { return problem_; }

  /// Until the end of this object `with` stands at `path`, both files or both folders.
  void cover(const std::string& path, const std::string& with) { mount(with, path, nullptr, MS_BIND); }
  /// Makes the folder an empty volume of its own.
  void makeVolume(const std::string& folder) { mount("none", folder, "tmpfs", 0); }

 private:
  // Once for the process. Whoever may not have a namespace of mounts may have one of users to have it in.
  static bool enterNamespace() {
    const auto mapped = [](auto id) { return std::to_string(id) + " " + std::to_string(id) + " 1"; };
    const std::string user = mapped(::geteuid());
    const std::string group = mapped(::getegid());
    if (::unshare(CLONE_NEWNS) != 0) {
      if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
      std::ofstream("/proc/self/setgroups") << "deny";
      std::ofstream("/proc/self/uid_map") << user;
      std::ofstream("/proc/self/gid_map") << group;
    }
    return ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
  }
  void mount(const std::string& what, const std::string& path, const char* kind, unsigned long flags) {
    if (!problem_.empty()) return;
    if (::mount(what.c_str(), path.c_str(), kind, flags, nullptr) == 0) {
      covered_.push_back(path);
    } else {
      problem_ = "cannot cover " + path + ": " + std::strerror(errno);
    }
  }

  std::vector<std::string> covered_;
  std::string problem_;
};

}  // namespace corvane
