// An open file or folder, closed with its owner, and what tells one file from another.
// Thread: one at a time.
#pragma once

#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace corvane::ditto {

class Descriptor {
 public:
  /// Takes over `opened`; a negative number stands for none.
  explicit Descriptor(int opened = -1) : number_(opened) {}
  ~Descriptor() { close(); }
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }

  [[nodiscard]] int get() const { return number_; }
  [[nodiscard]] bool isOpen() const { return number_ >= 0; }
  void close() {
    if (isOpen()) ::close(std::exchange(number_, -1));
  }

 private:
  int number_;
};

/// The same for two names exactly when they are one and the same file or folder.
struct FileIdentity {
  FileIdentity() = default;
  explicit FileIdentity(const struct stat& status) : device(status.st_dev), inode(status.st_ino) {}
  bool operator==(const FileIdentity&) const = default;

  dev_t device = 0;
  ino_t inode = 0;
};

}  // namespace corvane::ditto
