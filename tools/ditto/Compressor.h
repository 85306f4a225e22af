// Turns a file's bytes, at once or block by block, into a deflate stream: each stretch with the effort that
// it is worth, and what does not become smaller as it is. Owner: one for each thread. Thread: one at a time.
#pragma once

#include <memory>

#include "tools/ditto/Deflater.h"

namespace corvane::ditto {

class Compressor {
 public:
  /// Appends `bytes` to `out`. `last`: nothing more of the file follows; otherwise the next block's stream,
  /// made by any compressor, continues this one.
  void compress(Bytes bytes, bool last, Buffer& out);

 private:
  void compressSegment(Bytes bytes, Effort effort, bool last, Buffer& out);

  std::unique_ptr<Deflater> quick_ = makeDeflater(Effort::quick);
  std::unique_ptr<Deflater> thorough_ = makeDeflater(Effort::thorough);
};

}  // namespace corvane::ditto
