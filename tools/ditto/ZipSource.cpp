#include "tools/ditto/ZipSource.h"

#include <archive.h>
#include <unistd.h>
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <limits>

namespace corvane::ditto {
namespace {

using Bytes = std::span<const unsigned char>;

constexpr std::size_t kPiece = 262144;
constexpr unsigned char kMark = 0x08;  // in the second byte of a header's flags
constexpr off_t kMarkInEntry = 9;
constexpr off_t kMarkInLocalHeader = 7;
constexpr std::size_t kSystemInEntry = 5;
constexpr unsigned char kUnix = 3;
constexpr std::size_t kEntrySize = 46;
constexpr std::size_t kEndSize = 22;
constexpr std::size_t kLargeEndSize = 56;
constexpr std::size_t kLocatorSize = 20;
constexpr std::size_t kLongestComment = 65535;
constexpr std::uint64_t kInLargeForm = 0xffffffff;
constexpr std::uint64_t kLargeFormTag = 1;

std::uint64_t number(Bytes bytes, std::size_t offset, std::size_t size) {
  std::uint64_t value = 0;
  for (std::size_t i = size; i-- > 0;) value = value << 8 | bytes[offset + i];
  return value;
}

bool isRecord(Bytes bytes, unsigned char third, unsigned char fourth) {
  return bytes[0] == 'P' && bytes[1] == 'K' && bytes[2] == third && bytes[3] == fourth;
}

// A place in the file, or -1 for one that no file can have.
off_t place(std::uint64_t value) {
  return value <= static_cast<std::uint64_t>(std::numeric_limits<off_t>::max()) ? static_cast<off_t>(value)
                                                                                : -1;
}

// The field of an entry's extra data in which a local header beyond 4 GiB is found: after the two sizes, each
// of which is there only when it does not fit into the entry either.
off_t largeLocalHeader(Bytes entry, Bytes extra) {
  for (std::size_t at = 0; at + 4 <= extra.size();) {
    const std::size_t end = at + 4 + number(extra, at + 2, 2);
    std::size_t field = at + 4;
    if (number(entry, 20, 4) == kInLargeForm) field += 8;
    if (number(entry, 24, 4) == kInLargeForm) field += 8;
    if (number(extra, at, 2) == kLargeFormTag) {
      return field + 8 <= std::min(end, extra.size()) ? place(number(extra, field, 8)) : -1;
    }
    at = end;
  }
  return -1;
}

}  // namespace

struct ZipSourceCallbacks {
  static la_ssize_t read(struct archive* reader, void* data, const void** bytes) {
    auto& source = *static_cast<ZipSource*>(data);
    const ssize_t count = source.readAt(source.position_, source.buffer_);
    if (count < 0) archive_set_error(reader, errno, "%s", std::strerror(errno));
    if (count > 0) source.position_ += count;
    *bytes = source.buffer_.data();
    return count;
  }

  static la_int64_t skip(struct archive*, void* data, la_int64_t count) {
    auto& source = *static_cast<ZipSource*>(data);
    const off_t before = source.position_;
    source.position_ = std::min<off_t>(before + std::max<off_t>(count, 0), std::max(before, source.size_));
    return source.position_ - before;
  }

  static la_int64_t seek(struct archive*, void* data, la_int64_t offset, int whence) {
    auto& source = *static_cast<ZipSource*>(data);
    const off_t base = whence == SEEK_END ? source.size_ : whence == SEEK_CUR ? source.position_ : 0;
    if (offset < -base || offset > source.size_ - base) return ARCHIVE_FATAL;
    return source.position_ = base + offset;
  }
};

ZipSource::ZipSource(int file, off_t size) : file_(file), size_(size), buffer_(kPiece) {
  readDirectory();
  std::sort(marks_.begin(), marks_.end());
  std::sort(entries_.begin(), entries_.end(),
            [](const Entry& a, const Entry& b) { return a.header < b.header; });
}

bool ZipSource::openWith(struct archive* reader) {
  return archive_read_set_callback_data(reader, this) == ARCHIVE_OK &&
         archive_read_set_read_callback(reader, ZipSourceCallbacks::read) == ARCHIVE_OK &&
         archive_read_set_skip_callback(reader, ZipSourceCallbacks::skip) == ARCHIVE_OK &&
         archive_read_set_seek_callback(reader, ZipSourceCallbacks::seek) == ARCHIVE_OK &&
         archive_read_open1(reader) == ARCHIVE_OK;
}

ssize_t ZipSource::readAt(off_t position, std::span<unsigned char> bytes) const {
  const ssize_t count = ::pread(file_, bytes.data(), bytes.size(), position);
  auto mark = std::lower_bound(marks_.begin(), marks_.end(), position);
  for (; mark != marks_.end() && *mark < position + count; ++mark) {
    bytes[static_cast<std::size_t>(*mark - position)] &= static_cast<unsigned char>(~kMark);
  }
  return count;
}

bool ZipSource::readExactly(off_t position, std::span<unsigned char> bytes) const {
  return position >= 0 &&
         ::pread(file_, bytes.data(), bytes.size(), position) == static_cast<ssize_t>(bytes.size());
}

bool ZipSource::findDirectory(Directory& directory) const {
  std::vector<unsigned char> tail(
      static_cast<std::size_t>(std::min<off_t>(size_, kEndSize + kLongestComment)));
  const off_t start = size_ - static_cast<off_t>(tail.size());
  if (tail.size() < kEndSize || !readExactly(start, tail)) return false;
  for (std::size_t at = tail.size() - kEndSize + 1; at-- > 0;) {
    const Bytes end = Bytes(tail).subspan(at, kEndSize);
    if (!isRecord(end, 5, 6)) continue;
    directory = {place(number(end, 16, 4)), number(end, 10, 2)};
    return findLargeDirectory(start + static_cast<off_t>(at), directory) || directory.offset < size_;
  }
  return false;
}

bool ZipSource::findLargeDirectory(off_t end, Directory& directory) const {
  std::array<unsigned char, kLocatorSize> locator{};
  std::array<unsigned char, kLargeEndSize> large{};
  if (!readExactly(end - static_cast<off_t>(kLocatorSize), locator) || !isRecord(locator, 6, 7) ||
      !readExactly(place(number(locator, 8, 8)), large) || !isRecord(large, 6, 6)) {
    return false;
  }
  directory = {place(number(large, 48, 8)), number(large, 32, 8)};
  return true;
}

off_t ZipSource::localHeader(off_t entry, Bytes header) const {
  const std::uint64_t offset = number(header, 42, 4);
  if (offset != kInLargeForm) return place(offset);
  std::vector<unsigned char> extra(number(header, 30, 2));
  const auto name = static_cast<off_t>(number(header, 28, 2));
  if (!readExactly(entry + static_cast<off_t>(kEntrySize) + name, extra)) return -1;
  return largeLocalHeader(header, extra);
}

// Answers where the next entry begins.
std::optional<off_t> ZipSource::readEntry(off_t at) {
  std::array<unsigned char, kEntrySize> entry{};
  std::array<unsigned char, 4> local{};
  if (!readExactly(at, entry) || !isRecord(entry, 1, 2)) return std::nullopt;
  std::vector<unsigned char> name(number(entry, 28, 2));
  if (!readExactly(at + static_cast<off_t>(kEntrySize), name)) return std::nullopt;
  const off_t header = localHeader(at, entry);
  // Both marks or none: the library wants the two headers to agree.
  if (entry[kMarkInEntry] & kMark && readExactly(header, local) && isRecord(local, 3, 4)) {
    marks_.push_back(at + kMarkInEntry);
    marks_.push_back(header + kMarkInLocalHeader);
  }
  const bool keeps =
      entry[kSystemInEntry] == kUnix && std::find(name.begin(), name.end(), '\\') != name.end();
  entries_.push_back({header, keeps ? std::string(name.begin(), name.end()) : std::string()});
  return at + static_cast<off_t>(kEntrySize + name.size() + number(entry, 30, 2) + number(entry, 32, 2));
}

void ZipSource::readDirectory() {
  Directory directory;
  if (!findDirectory(directory)) return;
  std::optional<off_t> at = directory.offset;
  for (; at && directory.entries > 0; --directory.entries) at = readEntry(*at);
}

std::string ZipSource::exactName(std::size_t number, const std::string& name) const {
  if (number >= entries_.size()) return name;
  std::string changed = entries_[number].name;
  std::replace(changed.begin(), changed.end(), '\\', '/');
  // In a damaged archive the numbers may not agree.
  return changed == name ? entries_[number].name : name;
}

}  // namespace corvane::ditto
