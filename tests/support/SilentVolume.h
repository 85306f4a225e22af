// A file system that never answers, mounted for one test; as good as dead once it is closed.
#pragma once

#include <fcntl.h>
#include <sys/mount.h>
#include <unistd.h>
#include <string>

namespace corvane {

class SilentVolume {
 public:
  explicit SilentVolume(const std::string& folder) : folder_(folder) {
    const std::string options = "fd=" + std::to_string(device_) + ",rootmode=40000,user_id=0,group_id=0";
    mounted_ = device_ >= 0 && ::mount("silent", folder.c_str(), "fuse", 0, options.c_str()) == 0;
  }
  ~SilentVolume() {
    close();
    if (mounted_) ::umount2(folder_.c_str(), MNT_DETACH);
  }
  SilentVolume(const SilentVolume&) = delete;
  SilentVolume& operator=(const SilentVolume&) = delete;

  /// False where there is no FUSE, or this user may not mount.
  [[nodiscard]] bool isMounted() const { return mounted_; }
  /// Every access answers with an error from now on.
  void close() {
    if (device_ >= 0) ::close(device_);
    device_ = -1;
  }

 private:
  const std::string folder_;
  int device_ = ::open("/dev/fuse", O_RDWR | O_CLOEXEC);
  bool mounted_ = false;
};

}  // namespace corvane
