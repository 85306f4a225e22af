// What is kept of a file besides its bytes: owner, mode, times, extended attributes.
// What the target's file system has no room for, or only the superuser may set, is left out in silence.
// Thread: any.
#pragma once

#include <sys/stat.h>

namespace corvane::ditto {

struct KeptAttributes {
  bool extended = true;
  bool accessControlLists = true;
};

/// Gives the open file or folder `to` what `from` has; `status` is that of `from`. False, and errno, on
/// failure.
[[nodiscard]] bool copyAttributes(int from, const struct stat& status, int to, const KeptAttributes& kept);

/// Owner and times of a link. It has no more.
[[nodiscard]] bool setLinkAttributes(int folder, const char* name, const struct stat& status);

/// The mode's permissions, without those that would let others act in the owner's name, and the time of the
/// last change. False, and errno, on failure.
[[nodiscard]] bool setModeAndTime(int file, mode_t mode, const struct timespec& changed);

/// The time of a link's last change. False, and errno, on failure.
[[nodiscard]] bool setLinkTime(int folder, const char* name, const struct timespec& changed);

}  // namespace corvane::ditto
