// The names in a folder, sorted by their bytes, in little more room than they take on the disk.
// Thread: one at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace corvane::ditto {

class FolderListing {
 public:
  /// Reads all names but "." and ".." from the open `folder`. False, and errno, on failure; those read by
  /// then are there.
  [[nodiscard]] bool read(int folder);

  [[nodiscard]] std::size_t size() const { return order_.size(); }
  /// Valid as long as the listing is not changed.
  [[nodiscard]] const char* name(std::size_t index) const { return &text_[order_[index] + 1]; }
  /// What the folder says of the kind: a DT_ number, DT_UNKNOWN when it does not tell.
  [[nodiscard]] unsigned char kind(std::size_t index) const {
    return static_cast<unsigned char>(text_[order_[index]]);
  }

 private:
  void add(unsigned char kind, const char* name);

  std::string text_;  // each name after its kind and before a zero
  std::vector<std::size_t> order_;
};

}  // namespace corvane::ditto
