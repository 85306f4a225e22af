// Looking at a volume without being caught by it. Thread: any.
#pragma once

#include <chrono>
#include <string>

namespace corvane {

enum class VolumeState {
  none,      ///< no volume stands there, or none that this user may look into; a link is none either
  mounted,   ///< another file system than the folder above it, and it can be listed
  broken,    ///< a file system stands there, and says itself that its server or disk is lost
  noAnswer,  ///< not known: it did not answer in time, or the look failed for want of something
};

struct VolumeLook {
  VolumeState state = VolumeState::none;
  int device = 0;  ///< the system's number for it, when mounted
  int error = 0;   ///< why not, an errno; EBUSY for a part of this very file system that is mounted there
  bool isMountRoot = false;  ///< something is mounted there; false where the system does not tell
};

/// Looks at `folder` from another process, since what stands there may be a file system whose server is gone.
/// The process is ended when it is not back within `limit`, or two seconds after this program has been asked
/// to end; one that the file system does not let go is left to itself after another 2.5 s.
[[nodiscard]] VolumeLook lookAtVolume(const std::string& folder, std::chrono::milliseconds limit);

}  // namespace corvane
