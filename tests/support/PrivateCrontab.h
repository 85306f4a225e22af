// The system's own `crontab` command, but with an empty folder of crontabs that only this process and those
// it starts see: the user's stay untouched, whatever happens to the test. Needs Linux's mount namespaces.
// Thread: made while the process has only one.
#pragma once

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>
#include <cerrno>
#include <cstring>

#include "process/RunTool.h"
#include "tests/support/ScratchFolder.h"

namespace corvane {

class PrivateCrontab {
 public:
  PrivateCrontab() {
    static const bool entered = enterNamespace();
    if (!entered) problem_ = "no mounts of its own are allowed";
    cover("/var/spool/cron/crontabs", spool_.path());
  }
  ~PrivateCrontab() {
    for (const char* path : covered_) ::umount2(path, MNT_DETACH);
  }

  /// Why there is none, as in a container without the right; the test is then to be skipped.
  [[nodiscard]] const std::string& problem() const { return problem_; }

  void install(const std::string& text) const {
    const auto installed = runTool({kCommand, files_.write("crontab", text)});
    ASSERT_EQ(installed.status, 0) << installed.output;
  }
  /// As the command lists it; "none" when there is no crontab.
  [[nodiscard]] std::string list() const {
    const auto listing = runTool({kCommand, "-l"}, Capture::outputOnly);
    return listing.status == 0 ? listing.output : "none";
  }
  /// From now on these lines of shell are the command.
  void replaceCommand(const std::string& script) { cover(kCommand, files_.writeScript("command", script)); }

 private:
  static constexpr const char* kCommand = "/usr/bin/crontab";

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
  void cover(const char* path, const std::string& with) {
    if (!problem_.empty()) return;
    if (::mount(with.c_str(), path, nullptr, MS_BIND, nullptr) == 0) {
      covered_.push_back(path);
    } else {
      problem_ = std::string("cannot cover ") + path + ": " + std::strerror(errno);
    }
  }

  ScratchFolder spool_;
  ScratchFolder files_;
  std::vector<const char*> covered_;
  std::string problem_;
};

}  // namespace corvane
