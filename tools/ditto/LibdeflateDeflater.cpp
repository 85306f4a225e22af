#include "tools/ditto/LibdeflateDeflater.h"

#include <libdeflate.h>
#include <new>

#include "tools/ditto/DeflateSeam.h"

namespace corvane::ditto {

LibdeflateDeflater::LibdeflateDeflater(int level) : compressor_(libdeflate_alloc_compressor(level)) {
  if (!compressor_) throw std::bad_alloc();
}

LibdeflateDeflater::~LibdeflateDeflater() { libdeflate_free_compressor(compressor_); }

bool LibdeflateDeflater::deflate(Bytes bytes, bool last, Buffer& out) {
  const std::size_t start = out.size();
  const auto room = out.room(libdeflate_deflate_compress_bound(compressor_, bytes.size()));
  const std::size_t count =
      libdeflate_deflate_compress(compressor_, bytes.data(), bytes.size(), room.data(), room.size());
  out.advance(count);
  return count > 0 && (last || openEnd(out, start));
}

}  // namespace corvane::ditto
