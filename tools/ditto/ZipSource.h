// An archive file for the library to read, which alone would not give every name back as it was archived. It
// composes the accents of names that are marked as UTF-8, by which two of them may become one, and leaves
// those of others alone: so the marks are taken out of what it reads. And it takes backslashes for slashes,
// which is put right afterwards. Owner: whoever reads the archive, as long as it is read. Thread: one at a
// time.
#pragma once

#include <sys/types.h>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

struct archive;

namespace corvane::ditto {

class ZipSource {
 public:
  /// `file` stays open as long as this object lives and has `size` bytes.
  ZipSource(int file, off_t size);

  /// Makes `reader` read from here. False when it finds no archive; the reader knows why.
  [[nodiscard]] bool openWith(struct archive* reader);

  /// The name of an entry for which the library answered `name`; entries are numbered as it answers them.
  [[nodiscard]] std::string exactName(std::size_t number, const std::string& name) const;

 private:
  friend struct ZipSourceCallbacks;

  struct Directory {
    off_t offset = 0;
    std::uint64_t entries = 0;
  };

  struct Entry {
    off_t header;      // where its local one begins: the library's order
    std::string name;  // empty unless it has a backslash that is part of it
  };

  // The file's bytes from `position` on without the marks: how many, 0 at the end, -1 on failure.
  [[nodiscard]] ssize_t readAt(off_t position, std::span<unsigned char> bytes) const;
  [[nodiscard]] bool readExactly(off_t position, std::span<unsigned char> bytes) const;
  [[nodiscard]] bool findDirectory(Directory& directory) const;
  [[nodiscard]] bool findLargeDirectory(off_t end, Directory& directory) const;
  [[nodiscard]] off_t localHeader(off_t entry, std::span<const unsigned char> header) const;
  [[nodiscard]] std::optional<off_t> readEntry(off_t at);
  void readDirectory();

  int file_;
  off_t size_;
  off_t position_ = 0;
  std::vector<off_t> marks_;  // where the bytes with the marks are, ascending
  std::vector<Entry> entries_;
  std::vector<unsigned char> buffer_;
};

}  // namespace corvane::ditto
