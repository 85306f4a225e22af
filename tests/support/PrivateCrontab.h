// The system's own `crontab` command, but with an empty folder of crontabs that only this process and those
// it starts see: the user's stay untouched, whatever happens to the test. Needs Linux's mount namespaces.
// Thread: made while the process has only one.
#pragma once

#include <string>

#include "tests/support/ScratchFolder.h"

namespace corvane {

class PrivateCrontab {
 public:
  PrivateCrontab();
  ~PrivateCrontab();

  /// Why there is none, as in a container without the right; the test is then to be skipped.
  [[nodiscard]] const std::string& problem() const { return problem_; }

  void install(const std::string& text) const;
  /// As the command lists it; "none" when there is no crontab.
  [[nodiscard]] std::string list() const;
  /// From now on these lines of shell are the command.
  void replaceCommand(const std::string& script);

 private:
  void cover(const char* path, const std::string& with);

  ScratchFolder spool_;
  ScratchFolder files_;
  std::vector<const char*> covered_;
  std::string problem_;
};

}  // namespace corvane
