// Makes every write of more than a few bytes to a file fail while it lives, for root too.
#pragma once

#include <sys/resource.h>
#include <csignal>

namespace corvane {

class FullDisk {
 public:
  FullDisk() {
    ::getrlimit(RLIMIT_FSIZE, &saved_);
    const rlimit small{4, saved_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
  }
  ~FullDisk() {
    ::setrlimit(RLIMIT_FSIZE, &saved_);
    std::signal(SIGXFSZ, handler_);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit saved_{};
  void (*const handler_)(int) = std::signal(SIGXFSZ, SIG_IGN);
};

}  // namespace corvane
