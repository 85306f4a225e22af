// Which permissions new files get. Owner: whoever starts something, for the time of it. Thread: main; the
// system keeps one mask for the whole process.
#pragma once

#include <sys/types.h>

namespace corvane {

/// The variable in which the user's own mask, in octal digits, reaches the commands of the script.
inline constexpr const char* kFileMaskVariable = "CORVANE_UMASK";

/// What this process and those it starts make from now on is for its owner only, unless it says otherwise.
/// The user's own mask goes into the environment.
void keepNewFilesPrivate();

/// While it exists, the user's own mask is in force: for starting what the user will go on working with.
/// Without effect when the environment does not hold it.
class UsersFileMask {
 public:
  UsersFileMask();
  ~UsersFileMask();
  UsersFileMask(const UsersFileMask&) = delete;
  UsersFileMask& operator=(const UsersFileMask&) = delete;

 private:
  mode_t before_;
};

}  // namespace corvane
