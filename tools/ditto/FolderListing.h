// The names in a folder, sorted by their bytes, in little more room than they take on the disk.
// Thread: one at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace corvane::ditto {

class FolderListing {
 public:
  /// Reads all names but "." and ".." from the open `folder`. False, and errno, on failure; those read by
  /// then are there.
  [[nodiscard]] bool read(int folder);

  [[nodiscard]] std::size_t size() const { return order_.size(); }
  /// Valid as long as the listing is not changed.
  [[nodiscard]] const char* name(std::size_t index) const { return entry(order_[index]) + 1; }
  /// What the folder says of the kind: a DT_ number, DT_UNKNOWN when it does not tell.
  [[nodiscard]] unsigned char kind(std::size_t index) const {
    return static_cast<unsigned char>(*entry(order_[index]));
  }

 private:
  static constexpr std::size_t kPiece = 16384;

  void add(unsigned char kind, const char* name);
  [[nodiscard]] bool sort();
  [[nodiscard]] const char* entry(std::uint32_t place) const {
    return &text_[place / kPiece][place % kPiece];
  }

  // Each name after its kind and before a zero, in pieces: growing, a whole one would be there twice.
  std::vector<std::unique_ptr<char[]>> text_;
  std::size_t used_ = kPiece;  // of the last piece; one that is full ends with a mark
  std::size_t count_ = 0;
  std::vector<std::uint32_t> order_;
};

}  // namespace corvane::ditto
