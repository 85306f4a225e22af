// The folder that a volume is mounted on. Owner: whoever mounts, for the time of it. Thread: any.
#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace corvane {

/// Makes the folder, with those above it, when it is missing. What it made is removed again when it goes,
/// unless it was kept: a failed mount leaves nothing behind.
class MountFolder {
 public:
  explicit MountFolder(const std::string& path);
  ~MountFolder();
  MountFolder(const MountFolder&) = delete;
  MountFolder& operator=(const MountFolder&) = delete;

  /// Why the folder could not be made; empty when it is there.
  [[nodiscard]] const std::string& problem() const { return problem_; }
  /// The errno of it; 0 when the folder is there.
  [[nodiscard]] int error() const { return error_; }
  void keep() { made_.clear(); }

 private:
  std::vector<std::string> made_;
  std::string problem_;
  int error_ = 0;
};

/// Takes away whatever is mounted on `folder`, also when it does not answer or is in use. No effect when
/// nothing is, or when this user may not.
void detachVolume(const std::string& folder, std::chrono::milliseconds limit);

}  // namespace corvane
