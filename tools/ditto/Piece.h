// What passes from the threads that read and compress to the one that writes: a stretch of the archive, in
// whichever order it was made. Thread: handed over, never shared.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/ditto/Buffer.h"
#include "tools/ditto/ZipRecords.h"

namespace corvane::ditto {

/// Where a piece belongs: the batches in the order of the walk, and in each its parts.
struct Place {
  std::size_t batch = 0;
  std::size_t part = 0;
  auto operator<=>(const Place&) const = default;
};

/// What the user is told of a path: that it failed, or without a cause that it is at work.
struct Message {
  std::string path;
  std::string cause;
};

/// A block of a file that is too large for one piece.
struct LargeBlock {
  std::uint32_t checksum = 0;
  std::uint64_t size = 0;  // before it was compressed
  std::uint64_t packed = 0;
  bool last = false;
};

struct Piece {
  Buffer bytes;
  std::vector<ZipEntry> entries;    // whose headers are in `bytes`; their offsets count from its start
  std::optional<LargeBlock> block;  // then `entries` holds its file if it is the first one
  std::vector<Message> messages;
  bool endsBatch = false;
};

}  // namespace corvane::ditto
