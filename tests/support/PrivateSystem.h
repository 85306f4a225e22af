// A /tmp, a /Volumes and mounts that nobody but this process and what it starts can see. Whatever a test does
// there is gone with it. Linux; needs root. Thread: main, before there are others.
#pragma once

#include <string>

namespace corvane {

/// Enters it for good; new scratch folders then lie in /scratch. Without the right to, or when `needed`, a
/// path, would be hidden by the new /tmp, nothing happens. All users can reach the folder two above `needed`.
void enterPrivateSystem(const std::string& needed);
[[nodiscard]] bool isPrivateSystem();

/// An empty volume in memory, mounted while it lives.
class Volume {
 public:
  explicit Volume(std::string path);
  ~Volume();
  Volume(const Volume&) = delete;
  Volume& operator=(const Volume&) = delete;

  /// Leaves so many bytes or new entries free; the test fails when that cannot be done.
  void leaveFree(unsigned long bytes, unsigned long entries) const;

 private:
  const std::string path_;
};

}  // namespace corvane
