// Bytes that grow at their end, without ever being set to zero first. Thread: one at a time.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <span>

namespace corvane::ditto {

using Bytes = std::span<const unsigned char>;

class Buffer {
 public:
  /// What is behind the bytes it holds: at least `size`, valid until the next call that is not const.
  [[nodiscard]] std::span<unsigned char> room(std::size_t size) {
    if (capacity_ - size_ < size) grow(size_ + size);
    return {bytes_.get() + size_, capacity_ - size_};
  }
  /// Makes the first `count` bytes of the room part of what it holds.
  void advance(std::size_t count) { size_ += count; }

  void append(Bytes bytes) {
    if (bytes.empty()) return;
    std::memcpy(room(bytes.size()).data(), bytes.data(), bytes.size());
    size_ += bytes.size();
  }
  /// Keeps the first `size` bytes and the room of all.
  void cut(std::size_t size) { size_ = size; }

  /// The same bytes, with no room to grow.
  [[nodiscard]] Buffer copy() const {
    Buffer exact;
    exact.append(bytes());
    return exact;
  }

  [[nodiscard]] std::size_t size() const { return size_; }
  [[nodiscard]] std::size_t capacity() const { return capacity_; }
  [[nodiscard]] unsigned char* data() { return bytes_.get(); }
  [[nodiscard]] Bytes bytes() const { return {bytes_.get(), size_}; }

 private:
  void grow(std::size_t least) {
    const std::size_t capacity = std::max(least, 2 * capacity_);
    auto larger = std::make_unique_for_overwrite<unsigned char[]>(capacity);
    if (size_ > 0) std::memcpy(larger.get(), bytes_.get(), size_);
    bytes_ = std::move(larger);
    capacity_ = capacity;
  }

  std::unique_ptr<unsigned char[]> bytes_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

}  // namespace corvane::ditto
