#include "tools/ditto/Packer.h"

#include <fcntl.h>
#include <libdeflate.h>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "tools/ditto/Report.h"
#include "tools/ditto/Source.h"

namespace corvane::ditto {
namespace {

constexpr std::size_t kBlock = std::size_t{1} << 20;  // of a large file, and the most of a file in one piece
constexpr std::size_t kFullPiece = std::size_t{1} << 19;

std::uint32_t checksumOf(Bytes bytes) { return libdeflate_crc32(0, bytes.data(), bytes.size()); }

ssize_t readAt(int file, std::span<unsigned char> bytes, off_t position) {
  ssize_t count = 0;
  do {
    count = ::pread(file, bytes.data(), bytes.size(), position);
  } while (count < 0 && errno == EINTR);
  return count;
}

// Reads `size` bytes from `position` on; `isEnd`: where the file is to end. False, and the cause, if it has
// not got them or, at its end, more.
bool readBlock(int file, off_t position, std::size_t size, bool isEnd, Buffer& into, std::string& cause) {
  into.cut(0);
  // One byte more than expected shows without another look that the file has not grown.
  const auto room = into.room(size + 1).first(size + (isEnd ? 1 : 0));
  ssize_t count = 0;
  do {
    const std::size_t done = into.size();
    count = readAt(file, room.subspan(done), position + static_cast<off_t>(done));
    if (count < 0) {
      cause = std::strerror(errno);
      return false;
    }
    into.advance(static_cast<std::size_t>(count));
  } while (count > 0 && into.size() < size);
  if (into.size() != size) cause = kChanged;
  return into.size() == size;
}

}  // namespace

std::string ArchiveNames::shown(const std::string& path) const {
  return path.empty() ? source : below(source, path);
}

std::string ArchiveNames::inside(const std::string& path) const {
  return path.empty() ? root : prefix + path;
}

void Packer::work() {
  while (const auto work = queue_.take()) {
    if (const Batch* batch = std::get_if<Batch>(&*work)) {
      packBatch(*batch);
      queue_.finished(*batch, batchBytes_);
    } else {
      packBlock(std::get<Block>(*work));
    }
  }
}

void Packer::packBatch(const Batch& batch) {
  place_ = {batch.number, 0};
  batchBytes_ = 0;
  beginPiece();
  for (const Item& item : batch.items) {
    if (outbox_.demand() == Demand::nothing) break;
    if (packed_.size() >= kFullPiece) {
      endPiece(false);
      beginPiece();
    }
    packItem(item);
  }
  endPiece(true);
}

void Packer::beginPiece() {
  outbox_.awaitTurn(place_);
  piece_ = Piece();
  packed_.cut(0);
}

void Packer::endPiece(bool endsBatch) {
  piece_.endsBatch = endsBatch;
  piece_.bytes = packed_.copy();
  outbox_.put(place_, std::move(piece_));
  ++place_.part;
}

void Packer::packItem(const Item& item) {
  switch (item.step.kind) {
    case WalkStep::file:
      return packFile(item);
    case WalkStep::link:
      return packLink(item);
    case WalkStep::failure:
      return fail(names_.shown(item.step.path), item.step.cause);
    default:
      return packFolder(item);
  }
}

bool Packer::isNameUsable(const std::string& shown, const ZipEntry& entry) {
  if (entry.name.size() <= kLongestName) return true;
  fail(shown.substr(0, 100) + "...", "its path is too long for an archive");
  return false;
}

void Packer::tell(const std::string& shown) {
  if (verbose_) piece_.messages.push_back({shown, ""});
}

void Packer::packFolder(const Item& item) {
  ZipEntry entry(names_.inside(item.step.path), item.step.status);
  if (!isNameUsable(names_.shown(item.step.path), entry)) return;
  entry.offset = packed_.size();
  appendLocalHeader(entry, packed_);
  piece_.entries.push_back(std::move(entry));
}

void Packer::packLink(const Item& item) {
  const std::string shown = names_.shown(item.step.path);
  struct stat status {};
  std::string target;
  std::string cause;
  if (!readLink(item.folder->get(), item.step.lastName(), target, status, cause)) return fail(shown, cause);
  ZipEntry entry(names_.inside(item.step.path), status, target);
  if (!isNameUsable(shown, entry)) return;
  tell(shown);
  const Bytes bytes(reinterpret_cast<const unsigned char*>(target.data()), target.size());
  entry.checksum = checksumOf(bytes);
  entry.size = entry.packed = bytes.size();
  entry.offset = packed_.size();
  appendLocalHeader(entry, packed_);
  packed_.append(bytes);
  piece_.entries.push_back(std::move(entry));
}

void Packer::packFile(const Item& item) {
  const std::string& path = item.step.path;
  OpenedFile opened;
  std::string cause;
  opened.file = path.empty() ? openAgain(item.folder->get(), opened.status, cause)
                             : openFile(item.folder->get(), item.step.lastName(), opened.status, cause);
  opened.shown = names_.shown(path);
  if (!opened.file.isOpen()) return fail(opened.shown, cause);
  if (outbox_.demand() != Demand::everything) return;
  ZipEntry entry(names_.inside(path), opened.status);
  if (!isNameUsable(opened.shown, entry)) return;
  tell(opened.shown);
  entry.size = static_cast<std::uint64_t>(opened.status.st_size);
  if (entry.size > kBlock) return packLarge(std::move(opened), std::move(entry));
  packWhole(opened, std::move(entry));
}

void Packer::packWhole(const OpenedFile& opened, ZipEntry entry) {
  const int file = opened.file.get();
  std::string cause;
  if (!readBlock(file, 0, static_cast<std::size_t>(entry.size), true, input_, cause) ||
      !isUnchanged(file, opened.status, cause)) {
    return fail(opened.shown, cause);
  }
  const Bytes bytes = input_.bytes();
  batchBytes_ += bytes.size();
  entry.checksum = checksumOf(bytes);
  entry.offset = packed_.size();
  entry.isDeflated = !bytes.empty();
  appendLocalHeader(entry, packed_);
  const std::size_t data = packed_.size();
  compressor_.compress(bytes, true, packed_);
  if (packed_.size() - data >= bytes.size()) {
    packed_.cut(data);
    packed_.append(bytes);
    entry.isDeflated = false;
  }
  entry.packed = packed_.size() - data;
  // The header again, now that all of it is known.
  const std::size_t end = packed_.size();
  packed_.cut(static_cast<std::size_t>(entry.offset));
  appendLocalHeader(entry, packed_);
  packed_.cut(end);
  piece_.entries.push_back(std::move(entry));
}

void Packer::packLarge(OpenedFile opened, ZipEntry entry) {
  endPiece(false);
  auto large = std::make_shared<LargeFile>();
  large->file = std::move(opened.file);
  large->opened = opened.status;
  large->shownPath = std::move(opened.shown);
  large->first = place_;
  large->blocks = static_cast<std::size_t>((entry.size + kBlock - 1) / kBlock);
  large->unread = large->blocks;
  large->entry = std::move(entry);
  large->entry.isDeflated = true;
  place_.part += large->blocks;
  queue_.offer(large);
  while (const auto block = queue_.takeUntilTaken(*large)) packBlock(*block);
  beginPiece();
}

void Packer::packBlock(const Block& block) {
  LargeFile& large = *block.file;
  const Place place = {large.first.batch, large.first.part + block.number};
  outbox_.awaitTurn(place);
  Piece piece;
  std::string cause;
  const bool isWanted = outbox_.demand() == Demand::everything && !large.failed;
  if (isWanted && !fillBlock(block, piece, cause) && !large.failed.exchange(true)) {
    piece.messages.push_back({large.shownPath, cause});
  }
  outbox_.put(place, std::move(piece));
}

bool Packer::fillBlock(const Block& block, Piece& piece, std::string& cause) {
  LargeFile& large = *block.file;
  const std::uint64_t start = std::uint64_t{block.number} * kBlock;
  const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(kBlock, large.entry.size - start));
  const bool isEnd = block.number + 1 == large.blocks;
  const int file = large.file.get();
  if (!readBlock(file, static_cast<off_t>(start), size, isEnd, input_, cause)) return false;
  if (--large.unread == 0 && !isUnchanged(file, large.opened, cause)) return false;
  packed_.cut(0);
  if (block.number == 0) {
    piece.entries.push_back(large.entry);
    appendLocalHeader(large.entry, packed_);
  }
  const std::size_t data = packed_.size();
  compressor_.compress(input_.bytes(), isEnd, packed_);
  piece.block = LargeBlock{checksumOf(input_.bytes()), size, packed_.size() - data, isEnd};
  piece.bytes = packed_.copy();
  return true;
}

}  // namespace corvane::ditto
