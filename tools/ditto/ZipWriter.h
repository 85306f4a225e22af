// Puts an archive together from its pieces. Owner: whoever made the target, which outlives it. Thread: one at
// a time.
#pragma once

#include <vector>

#include "tools/ditto/Piece.h"
#include "tools/ditto/TargetFile.h"

namespace corvane::ditto {

class ZipWriter {
 public:
  explicit ZipWriter(TargetFile& target) : target_(target) {}

  /// Each of these answers false, and errno, when the target could not be written: the archive is lost then.
  /// Pieces come in their order; after one that belongs to a file that failed, no more are added.
  [[nodiscard]] bool add(const Piece& piece);
  /// Writes what follows the last entry.
  [[nodiscard]] bool finish();

 private:
  [[nodiscard]] bool write(Bytes bytes);
  [[nodiscard]] bool writeGathered();
  void addToDirectory(const ZipEntry& entry);
  [[nodiscard]] bool finishLarge();

  TargetFile& target_;
  std::uint64_t position_ = 0;
  Buffer gathered_;                // what is small is written together
  std::vector<Buffer> directory_;  // in pieces: growing, a whole one would be there twice
  std::uint64_t entries_ = 0;
  ZipEntry large_;  // whose blocks are being added
};

}  // namespace corvane::ditto
