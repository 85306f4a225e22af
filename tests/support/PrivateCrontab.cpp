#include "tests/support/PrivateCrontab.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>
#include <cerrno>
#include <cstring>

#include "process/RunTool.h"

namespace corvane {
namespace {

constexpr const char* kCommand = "/usr/bin/crontab";

// Once for the process. Whoever may not have a namespace of mounts may have one of users to have it in.
bool enterNamespace() {
  const std::string user = std::to_string(::geteuid());
  const std::string group = std::to_string(::getegid());
  if (::unshare(CLONE_NEWNS) != 0) {
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << user + " " + user + " 1";
    std::ofstream("/proc/self/gid_map") << group + " " + group + " 1";
  }
  return ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

}  // namespace

PrivateCrontab::PrivateCrontab() {
  static const bool entered = enterNamespace();
  if (!entered) problem_ = std::string("no namespace: ") + std::strerror(errno);
  cover("/var/spool/cron/crontabs", spool_.path());
}

PrivateCrontab::~PrivateCrontab() {
  for (const char* path : covered_) ::umount2(path, MNT_DETACH);
}

void PrivateCrontab::cover(const char* path, const std::string& with) {
  if (!problem_.empty()) return;
  if (::mount(with.c_str(), path, nullptr, MS_BIND, nullptr) == 0) {
    covered_.push_back(path);
  } else {
    problem_ = std::string("cannot cover ") + path + ": " + std::strerror(errno);
  }
}

void PrivateCrontab::install(const std::string& text) const {
  const auto installed = runTool({kCommand, files_.write("crontab", text)});
  ASSERT_EQ(installed.status, 0) << installed.output;
}

std::string PrivateCrontab::list() const {
  const auto listing = runTool({kCommand, "-l"}, Capture::outputOnly);
  return listing.status == 0 ? listing.output : "none";
}

void PrivateCrontab::replaceCommand(const std::string& script) {
  cover(kCommand, files_.writeScript("command", script));
}

}  // namespace corvane
