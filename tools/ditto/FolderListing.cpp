#include "tools/ditto/FolderListing.h"

#include <dirent.h>
#include <algorithm>
#include <cstring>

namespace corvane::ditto {

void FolderListing::add(unsigned char kind, const char* name) {
  if (std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0) return;
  order_.push_back(text_.size());
  text_ += static_cast<char>(kind);
  text_.append(name, std::strlen(name) + 1);
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
  std::sort(order_.begin(), order_.end(),
            [this](std::size_t a, std::size_t b) { return std::strcmp(&text_[a + 1], &text_[b + 1]) < 0; });
  return size == 0;
}

}  // namespace corvane::ditto
