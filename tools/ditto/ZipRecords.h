// The records of which a PKZip archive consists, each in the 64-bit form where the small one does not hold
// the numbers. Names are stored as they are and called UTF-8 when they are that. Thread: any.
#pragma once

#include <sys/stat.h>
#include <cstdint>
#include <string>

#include "tools/ditto/Buffer.h"

namespace corvane::ditto {

struct ZipEntry {
  ZipEntry() = default;
  /// `pathInside` has slashes between the names in it; a folder ends with one. `linkTarget`: of a link.
  ZipEntry(std::string pathInside, const struct stat& status, const std::string& linkTarget = "");

  std::string name;
  mode_t mode = 0;
  std::int64_t changed = 0;  // seconds since 1970
  bool isUtf8 = false;       // and not ASCII
  bool isDeflated = false;   // or stored
  bool isLarge = false;      // its own header has room for 64-bit sizes
  std::uint32_t checksum = 0;
  std::uint64_t packed = 0;  // bytes in the archive
  std::uint64_t size = 0;    // bytes of the file
  std::uint64_t offset = 0;  // of its own header in the archive
};

/// A path that is longer fits into no archive.
inline constexpr std::size_t kLongestName = 65535;

/// Stands in a field of 32 bits for a number that it does not hold.
inline constexpr std::uint64_t kInLargeForm = 0xffffffff;

/// The header in front of the data; its length depends on name, time and `isLarge` only, so that it can be
/// written again when the rest is known.
void appendLocalHeader(const ZipEntry& entry, Buffer& out);

/// The entry's record in the directory at the archive's end.
void appendDirectoryRecord(const ZipEntry& entry, Buffer& out);

struct ZipDirectory {
  std::uint64_t entries = 0;
  std::uint64_t offset = 0;
  std::uint64_t size = 0;
};

/// What follows the directory.
void appendEnd(const ZipDirectory& directory, Buffer& out);

}  // namespace corvane::ditto
