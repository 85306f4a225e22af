#include "tools/ditto/ZipWriter.h"

#include <zlib.h>
#include <algorithm>
#include <cerrno>

namespace corvane::ditto {
namespace {

constexpr std::size_t kDirectoryPiece = 65536;
constexpr std::size_t kGathered = std::size_t{1} << 18;
constexpr std::size_t kMostBesidesName = 128;  // of a record

std::span<const char> asChars(Bytes bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

bool ZipWriter::write(Bytes bytes) {
  position_ += bytes.size();
  const bool isLarge = bytes.size() > kGathered / 2;
  if ((isLarge || gathered_.size() + bytes.size() > kGathered) && !writeGathered()) return false;
  if (isLarge) return target_.write(asChars(bytes));
  gathered_.append(bytes);
  return true;
}

bool ZipWriter::writeGathered() {
  const bool done = target_.write(asChars(gathered_.bytes()));
  gathered_.cut(0);
  return done;
}

void ZipWriter::addToDirectory(const ZipEntry& entry) {
  const std::size_t most = entry.name.size() + kMostBesidesName;
  if (directory_.empty() || directory_.back().capacity() - directory_.back().size() < most) {
    static_cast<void>(directory_.emplace_back().room(std::max(most, kDirectoryPiece)));
  }
  appendDirectoryRecord(entry, directory_.back());
  ++entries_;
}

bool ZipWriter::add(const Piece& piece) {
  const std::uint64_t start = position_;
  if (!write(piece.bytes.bytes())) return false;
  for (ZipEntry entry : piece.entries) {
    entry.offset += start;
    if (!piece.block) {
      addToDirectory(entry);
      continue;
    }
    large_ = std::move(entry);
    large_.size = large_.packed = 0;
  }
  if (!piece.block) return true;
  large_.checksum = static_cast<std::uint32_t>(
      crc32_combine(large_.checksum, piece.block->checksum, static_cast<z_off_t>(piece.block->size)));
  large_.size += piece.block->size;
  large_.packed += piece.block->packed;
  return !piece.block->last || finishLarge();
}

// The header was written before the sizes were known: with them in it, the archive can be read from a pipe
// too.
bool ZipWriter::finishLarge() {
  if (!large_.isLarge && std::max(large_.size, large_.packed) >= kInLargeForm) {
    errno = EFBIG;
    return false;
  }
  addToDirectory(large_);
  Buffer header;
  appendLocalHeader(large_, header);
  return writeGathered() && target_.rewrite(static_cast<off_t>(large_.offset), asChars(header.bytes()));
}

bool ZipWriter::finish() {
  ZipDirectory directory;
  directory.entries = entries_;
  directory.offset = position_;
  for (const Buffer& piece : directory_) {
    if (!write(piece.bytes())) return false;
  }
  directory.size = position_ - directory.offset;
  Buffer end;
  appendEnd(directory, end);
  return write(end.bytes()) && writeGathered();
}

}  // namespace corvane::ditto
