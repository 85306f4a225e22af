// Collects what is written to standard error while it lives; the log goes there.
#pragma once

#include <fcntl.h>
#include <unistd.h>
#include <string>

#include "tests/support/ScratchFolder.h"

namespace corvane {

class StandardError {
 public:
  StandardError() {
    const int file = ::open(folder_.write("errors", "").c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    ::dup2(file, STDERR_FILENO);
    ::close(file);
  }
  ~StandardError() {
    ::dup2(saved_, STDERR_FILENO);
    ::close(saved_);
  }
  StandardError(const StandardError&) = delete;
  StandardError& operator=(const StandardError&) = delete;

  [[nodiscard]] std::string text() const { return folder_.read("errors"); }

 private:
  const ScratchFolder folder_;
  const int saved_ = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
};

}  // namespace corvane
