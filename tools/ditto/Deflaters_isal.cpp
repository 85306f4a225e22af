// ISA-L is several times faster than libdeflate where there is little to find, and finds less where there is
// more: each does what it does best.
#include <isa-l/igzip_lib.h>
#include <vector>

#include "tools/ditto/LibdeflateDeflater.h"

namespace corvane::ditto {
namespace {

class QuickDeflater : public Deflater {
 public:
  bool deflate(Bytes bytes, bool last, Buffer& out) override;

 private:
  static constexpr std::uint32_t kLevel = 1;

  isal_zstream stream_{};
  std::vector<std::uint8_t> work_ = std::vector<std::uint8_t>(ISAL_DEF_LVL1_DEFAULT);
};

bool QuickDeflater::deflate(Bytes bytes, bool last, Buffer& out) {
  // Stored, it would take five bytes more for every 64 KiB; the rest is for the last one's end.
  const auto room = out.room(bytes.size() + bytes.size() / 1024 + 1024);
  isal_deflate_init(&stream_);
  stream_.level = kLevel;
  stream_.level_buf = work_.data();
  stream_.level_buf_size = static_cast<std::uint32_t>(work_.size());
  stream_.flush = last ? NO_FLUSH : FULL_FLUSH;
  stream_.end_of_stream = last ? 1 : 0;
  stream_.next_in = const_cast<std::uint8_t*>(bytes.data());
  stream_.avail_in = static_cast<std::uint32_t>(bytes.size());
  stream_.next_out = room.data();
  stream_.avail_out = static_cast<std::uint32_t>(room.size());
  const bool done = isal_deflate(&stream_) == COMP_OK && stream_.avail_in == 0 && stream_.avail_out > 0;
  out.advance(stream_.total_out);
  return done;
}

}  // namespace

std::unique_ptr<Deflater> makeDeflater(Effort effort) {
  if (effort == Effort::quick) return std::make_unique<QuickDeflater>();
  return std::make_unique<LibdeflateDeflater>(3);
}

}  // namespace corvane::ditto
