// Compression behind a door of one function, so that the library that suits the machine can stand there.
// Owner: one for each thread that compresses. Thread: one at a time.
#pragma once

#include <memory>

#include "tools/ditto/Buffer.h"

namespace corvane::ditto {

class Deflater {
 public:
  virtual ~Deflater() = default;

  /// Appends `bytes` to `out` as a deflate stream that refers to nothing before it. `last`: the stream is
  /// complete; otherwise it ends at a byte's edge, and another one continues it. False when it failed, and
  /// then `out` may hold anything behind what was there.
  [[nodiscard]] virtual bool deflate(Bytes bytes, bool last, Buffer& out) = 0;
};

enum class Effort {
  quick,    ///< for what hardly becomes smaller: several times faster
  thorough  ///< as small as the classic compressors' usual setting
};

/// Never empty; throws std::bad_alloc.
[[nodiscard]] std::unique_ptr<Deflater> makeDeflater(Effort effort);

}  // namespace corvane::ditto
