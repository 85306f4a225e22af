// For machines that the faster library is not made for.
#include "tools/ditto/LibdeflateDeflater.h"

namespace corvane::ditto {

std::unique_ptr<Deflater> makeDeflater(Effort effort) {
  return std::make_unique<LibdeflateDeflater>(effort == Effort::quick ? 1 : 3);
}

}  // namespace corvane::ditto
