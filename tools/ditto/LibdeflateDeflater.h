// Compression by libdeflate. Thread: one at a time.
#pragma once

#include "tools/ditto/Deflater.h"

struct libdeflate_compressor;

namespace corvane::ditto {

class LibdeflateDeflater : public Deflater {
 public:
  /// `level`: from 1, the fastest, to 12. Throws std::bad_alloc.
  explicit LibdeflateDeflater(int level);
  ~LibdeflateDeflater() override;
  LibdeflateDeflater(const LibdeflateDeflater&) = delete;
  LibdeflateDeflater& operator=(const LibdeflateDeflater&) = delete;

  bool deflate(Bytes bytes, bool last, Buffer& out) override;

 private:
  libdeflate_compressor* compressor_;
};

}  // namespace corvane::ditto
