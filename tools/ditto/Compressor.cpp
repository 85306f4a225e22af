#include "tools/ditto/Compressor.h"

#include <cstdint>

#include "tools/ditto/Segments.h"

namespace corvane::ditto {
namespace {

constexpr std::size_t kStoredBlock = 65535;
constexpr std::size_t kStoredHeader = 5;

std::size_t storedSize(std::size_t size) {
  return size + (size + kStoredBlock - 1) / kStoredBlock * kStoredHeader;
}

void store(Bytes bytes, bool last, Buffer& out) {
  while (!bytes.empty()) {
    const auto size = static_cast<std::uint16_t>(std::min(bytes.size(), kStoredBlock));
    const bool isEnd = last && size == bytes.size();
    const unsigned char header[kStoredHeader] = {
        static_cast<unsigned char>(isEnd), static_cast<unsigned char>(size),
        static_cast<unsigned char>(size >> 8), static_cast<unsigned char>(~size),
        static_cast<unsigned char>(~size >> 8)};
    out.append(header);
    out.append(bytes.first(size));
    bytes = bytes.subspan(size);
  }
}

}  // namespace

void Compressor::compress(Bytes bytes, bool last, Buffer& out) {
  while (!bytes.empty()) {
    const Segment segment = firstSegment(bytes);
    const bool isEnd = segment.size == bytes.size();
    compressSegment(bytes.first(segment.size), segment.effort, last && isEnd, out);
    bytes = bytes.subspan(segment.size);
  }
}

void Compressor::compressSegment(Bytes bytes, Effort effort, bool last, Buffer& out) {
  const std::size_t start = out.size();
  Deflater& deflater = effort == Effort::quick ? *quick_ : *thorough_;
  if (deflater.deflate(bytes, last, out) && out.size() - start <= storedSize(bytes.size())) return;
  out.cut(start);
  store(bytes, last, out);
}

}  // namespace corvane::ditto
