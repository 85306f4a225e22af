#include "tools/ditto/ZipRecords.h"

#include <gmock/gmock.h>

namespace corvane::ditto {
namespace {

// Their digits, field by field, with a blank after each.
void expectFields(Bytes bytes, std::string fields) {
  std::string text;
  for (const unsigned byte : bytes) {
    for (const unsigned digit : {byte >> 4, byte & 15}) text += "0123456789abcdef"[digit];
  }
  std::erase(fields, ' ');
  EXPECT_EQ(text, fields);
}

// A time that neither form holds leaves its field out of the record, and is the end of 2107 in the other.
ZipEntry entryOf(std::uint64_t size) {
  struct stat status {};
  status.st_mode = S_IFREG | 0640;
  status.st_size = static_cast<off_t>(size);
  status.st_mtim.tv_sec = std::int64_t{1} << 40;
  ZipEntry entry("n", status);
  entry.isDeflated = true;
  entry.checksum = 0x01020304;
  entry.packed = 5;
  entry.size = size;
  return entry;
}

TEST(ZipRecordsTest, HoldNumbersOfSixtyFourBits) {
  ZipEntry entry = entryOf(0x123456789);
  Buffer local;
  appendLocalHeader(entry, local);
  expectFields(local.bytes(),
               "504b0304 2d00 0000 0800 7dbf 9fff 04030201 ffffffff ffffffff 0100 1400 6e 0100 1000 "
               "8967452301000000 0500000000000000 ");
  entry.offset = 0x100000000;
  Buffer record;
  appendDirectoryRecord(entry, record);
  expectFields(record.bytes(),
               "504b0102 2d03 2d00 0000 0800 7dbf 9fff 04030201 05000000 ffffffff 0100 1400 0000 0000 0000 "
               "0000a081 ffffffff 6e 0100 1000 8967452301000000 0000000001000000 ");
  Buffer end;
  appendEnd({3, 0x100000000, 0x200}, end);
  expectFields(end.bytes(),
               "504b0606 2c00000000000000 2d03 2d00 00000000 00000000 0300000000000000 0300000000000000 "
               "0002000000000000 0000000001000000 "
               "504b0607 00000000 0002000001000000 01000000 "
               "504b0506 0000 0000 0300 0300 00020000 ffffffff 0000 ");
}

TEST(ZipRecordsTest, OnlyWhatDoesNotFitIsInTheLargeForm) {
  constexpr std::uint64_t kFits = 0xfffffffe;
  constexpr std::uint64_t kLarge = 0xffffffff;
  const std::uint64_t cases[][4] = {{kFits, kFits, kFits, 0},
                                    {kLarge, 1, 1, 12},
                                    {1, kLarge, 1, 12},
                                    {1, 1, kLarge, 12},
                                    {kLarge, kLarge, kLarge, 28}};
  for (const auto& [size, packed, offset, more] : cases) {
    ZipEntry entry = entryOf(size);
    entry.packed = packed;
    entry.offset = offset;
    Buffer record;
    appendDirectoryRecord(entry, record);
    EXPECT_EQ(record.size(), 46 + 1 + more);
  }
  for (const unsigned entries : {65535U, 65536U}) {
    Buffer end;
    appendEnd({entries, 1, 2}, end);
    EXPECT_EQ(end.size(), 56 + 20 + 22);
  }
  // What does not become smaller, in segments of 32 KiB and 1 KiB in turn, of five bytes more each.
  EXPECT_TRUE(entryOf(kLarge / (33792 + 10) * 33792).isLarge);
}

}  // namespace
}  // namespace corvane::ditto
