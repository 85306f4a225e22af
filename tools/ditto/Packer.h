// Makes pieces of an archive out of what the queue hands out: opens, reads, compresses. Owner: one for each
// thread that does so. Thread: one at a time.
#pragma once

#include <memory>
#include <string>

#include "tools/ditto/Compressor.h"
#include "tools/ditto/Outbox.h"
#include "tools/ditto/WorkQueue.h"

namespace corvane::ditto {

/// How what is archived is called.
struct ArchiveNames {
  std::string source;  ///< as the user named it
  std::string root;    ///< what the source itself is called in the archive
  std::string prefix;  ///< of every other name in it

  [[nodiscard]] std::string shown(const std::string& path) const;
  [[nodiscard]] std::string inside(const std::string& path) const;
};

/// A file that is about to be read.
struct OpenedFile {
  Descriptor file;
  struct stat status {};
  std::string shown;  ///< its path in messages
};

class Packer {
 public:
  /// `verbose`: the pieces tell of every file and link.
  Packer(const ArchiveNames& names, bool verbose, WorkQueue& queue, Outbox& outbox)
      : names_(names), verbose_(verbose), queue_(queue), outbox_(outbox) {}

  /// Works until there is nothing left to do.
  void work();

 private:
  void packBatch(const Batch& batch);
  void packItem(const Item& item);
  void packFolder(const Item& item);
  void packLink(const Item& item);
  void packFile(const Item& item);
  void packWhole(const OpenedFile& opened, ZipEntry entry);
  void packLarge(OpenedFile opened, ZipEntry entry);
  void packBlock(const Block& block);
  [[nodiscard]] bool fillBlock(const Block& block, Piece& piece, std::string& cause);

  [[nodiscard]] bool isNameUsable(const std::string& shown, const ZipEntry& entry);
  void fail(const std::string& shown, const std::string& cause) { piece_.messages.push_back({shown, cause}); }
  void tell(const std::string& shown);
  void beginPiece();
  void endPiece(bool endsBatch);

  const ArchiveNames& names_;
  bool verbose_;
  WorkQueue& queue_;
  Outbox& outbox_;
  Compressor compressor_;
  Buffer input_;
  Buffer packed_;                 // becomes the bytes of the piece at work
  Piece piece_;                   // of the batch at hand
  Place place_;                   // where it belongs
  std::uint64_t batchBytes_ = 0;  // that were read for the batch at hand
};

}  // namespace corvane::ditto
