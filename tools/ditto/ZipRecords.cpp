#include "tools/ditto/ZipRecords.h"

#include <time.h>
#include <algorithm>
#include <limits>

#include "process/Utf8Decoder.h"

namespace corvane::ditto {
namespace {

constexpr std::uint32_t kLocalHeader = 0x04034b50;
constexpr std::uint32_t kDirectoryRecord = 0x02014b50;
constexpr std::uint32_t kEnd = 0x06054b50;
constexpr std::uint32_t kLargeEnd = 0x06064b50;
constexpr std::uint32_t kLargeEndLocator = 0x07064b50;
constexpr std::uint64_t kLargeEndSize = 44;  // of what follows this number in it

constexpr unsigned kUnixTimes = 0x5455;
constexpr unsigned kLargeNumbers = 1;
constexpr unsigned kUtf8Names = 1U << 11;
constexpr unsigned kMadeOnUnix = 3U << 8;
constexpr unsigned kFolderOfDos = 16;

constexpr std::uint64_t kCountInLargeForm = 0xffff;
// What does not become smaller grows: stored, by five bytes for each segment and each 65,535 bytes of it. The
// shortest segments that can follow each other are of 32 KiB and of 1 KiB, so it is less than 1 in 3,000;
// the room left here is 1 in 256.
constexpr std::int64_t kLargestInSmallForm = 0xff000000;

class Record {
 public:
  explicit Record(Buffer& out) : out_(out) {}
  Record& two(std::uint64_t number) { return put(number, 2); }
  Record& four(std::uint64_t number) { return put(number, 4); }
  Record& eight(std::uint64_t number) { return put(number, 8); }
  Record& one(std::uint64_t number) { return put(number, 1); }
  void text(const std::string& text) {
    out_.append({reinterpret_cast<const unsigned char*>(text.data()), text.size()});
  }

 private:
  Record& put(std::uint64_t number, std::size_t size) {
    const auto room = out_.room(size);
    for (std::size_t i = 0; i < size; ++i) room[i] = static_cast<unsigned char>(number >> (8 * i));
    out_.advance(size);
    return *this;
  }

  Buffer& out_;
};

bool isAscii(const std::string& text) {
  return std::all_of(text.begin(), text.end(),
                     [](char byte) { return static_cast<unsigned char>(byte) < 128; });
}

struct DosTime {
  unsigned time;
  unsigned date;
};

constexpr DosTime kEarliest = {0, 1U << 5 | 1U};                                       // 1980
constexpr DosTime kLatest = {23U << 11 | 59U << 5 | 29U, 127U << 9 | 12U << 5 | 31U};  // 2107

// The local time, by convention; odd seconds get lost. What is out of its reach becomes its end.
DosTime dosTime(std::int64_t seconds) {
  struct tm local {};
  const auto moment = static_cast<time_t>(seconds);
  if (seconds < 0) return kEarliest;
  if (!::localtime_r(&moment, &local) || local.tm_year > 207) return kLatest;
  if (local.tm_year < 80) return kEarliest;
  const auto part = [](int value, unsigned shift) { return static_cast<unsigned>(value) << shift; };
  return {part(local.tm_hour, 11) | part(local.tm_min, 5) | part(local.tm_sec / 2, 0),
          part(local.tm_year - 80, 9) | part(local.tm_mon + 1, 5) | part(local.tm_mday, 0)};
}

// Some readers take the number's highest bit for a sign, and some do not.
bool hasUnixTime(const ZipEntry& entry) {
  return entry.changed >= 0 && entry.changed <= std::numeric_limits<std::int32_t>::max();
}

unsigned timeSize(const ZipEntry& entry) { return hasUnixTime(entry) ? 9 : 0; }

void appendTime(const ZipEntry& entry, Record& record) {
  if (hasUnixTime(entry))
    record.two(kUnixTimes).two(5).one(1).four(static_cast<std::uint64_t>(entry.changed));
}

unsigned neededVersion(const ZipEntry& entry, bool isLarge) {
  if (isLarge) return 45;
  return entry.isDeflated || S_ISDIR(entry.mode) ? 20 : 10;
}

// The fields that both headers have in common.
void appendShared(const ZipEntry& entry, bool isLarge, Record& record) {
  const DosTime changed = dosTime(entry.changed);
  record.two(neededVersion(entry, isLarge)).two(entry.isUtf8 ? kUtf8Names : 0).two(entry.isDeflated ? 8 : 0);
  record.two(changed.time).two(changed.date).four(entry.checksum);
}

}  // namespace

ZipEntry::ZipEntry(std::string pathInside, const struct stat& status, const std::string& linkTarget)
    : name(std::move(pathInside)), mode(status.st_mode), changed(status.st_mtim.tv_sec) {
  if (S_ISDIR(mode)) name += '/';
  if (S_ISREG(mode)) isLarge = status.st_size >= kLargestInSmallForm;
  // One mark for both. Readers refuse marked names that are no UTF-8, and give unmarked ones back byte by
  // byte.
  isUtf8 = !isAscii(name) && corvane::isUtf8(name) && corvane::isUtf8(linkTarget);
}

void appendLocalHeader(const ZipEntry& entry, Buffer& out) {
  Record record(out);
  record.four(kLocalHeader);
  appendShared(entry, entry.isLarge, record);
  record.four(entry.isLarge ? kInLargeForm : entry.packed).four(entry.isLarge ? kInLargeForm : entry.size);
  record.two(entry.name.size()).two(timeSize(entry) + (entry.isLarge ? 20U : 0U)).text(entry.name);
  if (entry.isLarge) record.two(kLargeNumbers).two(16).eight(entry.size).eight(entry.packed);
  appendTime(entry, record);
}

void appendDirectoryRecord(const ZipEntry& entry, Buffer& out) {
  const bool large[] = {entry.size >= kInLargeForm, entry.packed >= kInLargeForm,
                        entry.offset >= kInLargeForm};
  const std::uint64_t numbers[] = {entry.size, entry.packed, entry.offset};
  const unsigned largeSize = 8U * (large[0] + large[1] + large[2]);
  Record record(out);
  record.four(kDirectoryRecord).two(kMadeOnUnix | 45U);
  appendShared(entry, entry.isLarge || largeSize > 0, record);
  record.four(std::min(entry.packed, kInLargeForm)).four(std::min(entry.size, kInLargeForm));
  record.two(entry.name.size()).two(timeSize(entry) + (largeSize > 0 ? 4 + largeSize : 0));
  record.two(0).two(0).two(0);  // comment, disk, whether it is text
  record.four(std::uint64_t{entry.mode} << 16 | (S_ISDIR(entry.mode) ? kFolderOfDos : 0));
  record.four(std::min(entry.offset, kInLargeForm)).text(entry.name);
  if (largeSize > 0) record.two(kLargeNumbers).two(largeSize);
  for (std::size_t i = 0; i < 3; ++i) {
    if (large[i]) record.eight(numbers[i]);
  }
  appendTime(entry, record);
}

void appendEnd(const ZipDirectory& directory, Buffer& out) {
  const std::uint64_t end = directory.offset + directory.size;
  Record record(out);
  if (end >= kInLargeForm || directory.entries >= kCountInLargeForm) {
    record.four(kLargeEnd).eight(kLargeEndSize).two(kMadeOnUnix | 45U).two(45).four(0).four(0);
    record.eight(directory.entries).eight(directory.entries).eight(directory.size).eight(directory.offset);
    record.four(kLargeEndLocator).four(0).eight(end).four(1);
  }
  const std::uint64_t count = std::min(directory.entries, kCountInLargeForm);
  record.four(kEnd).two(0).two(0).two(count).two(count);
  record.four(std::min(directory.size, kInLargeForm)).four(std::min(directory.offset, kInLargeForm)).two(0);
}

}  // namespace corvane::ditto
