// A folder of its own for one test, removed with everything in it when the test ends.
#pragma once

#include <cstdlib>
#include <stdexcept>
#include <string>

#include "process/Files.h"

namespace corvane {

class ScratchFolder {
 public:
  ScratchFolder() {
    const char* temporary = std::getenv("TMPDIR");
    path_ = std::string(temporary ? temporary : "/tmp") + "/corvane-test.XXXXXX";
    if (!::mkdtemp(path_.data())) throw std::runtime_error("cannot make " + path_);
  }
  ~ScratchFolder() { removeTree(path_); }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace corvane
