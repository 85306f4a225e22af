#include "tools/ditto/FolderListing.h"

#include <dirent.h>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>

namespace corvane::ditto {

namespace {

constexpr char kEndOfPiece = '\xff';  // in the place of a kind

}  // namespace

void FolderListing::add(unsigned char kind, const char* name) {
  if (std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0) return;
  const std::size_t size = std::strlen(name) + 1;
  if (used_ + 1 + size + 1 > kPiece) {
    text_.push_back(std::make_unique_for_overwrite<char[]>(kPiece));
    used_ = 0;
  }
  char* const at = text_.back().get() + used_;
  at[0] = static_cast<char>(kind);
  std::memcpy(at + 1, name, size);
  at[1 + size] = kEndOfPiece;
  used_ += 1 + size;
  ++count_;
}

bool FolderListing::sort() {
  if (text_.size() > std::numeric_limits<std::uint32_t>::max() / kPiece) {
    errno = EOVERFLOW;
    return false;
  }
  order_.reserve(count_);
  for (std::size_t piece = 0; piece < text_.size(); ++piece) {
    auto place = static_cast<std::uint32_t>(piece * kPiece);
    for (; *entry(place) != kEndOfPiece;
         place += static_cast<std::uint32_t>(std::strlen(entry(place) + 1)) + 2)
      order_.push_back(place);
  }
  std::sort(order_.begin(), order_.end(),
            [this](std::uint32_t a, std::uint32_t b) { return std::strcmp(entry(a) + 1, entry(b) + 1) < 0; });
  return true;
}

bool FolderListing::read(int folder) {
  alignas(struct dirent64) char entries[32768];
  ssize_t size = 0;
  while ((size = ::getdents64(folder, entries, sizeof entries)) > 0) {
    for (ssize_t at = 0; at < size;) {
      const auto* entry = reinterpret_cast<const struct dirent64*>(entries + at);
      add(entry->d_type, entry->d_name);
      at += entry->d_reclen;
    }
  }
  const int problem = errno;
  if (!sort()) return false;
  errno = problem;
  return size == 0;
}

}  // namespace corvane::ditto
