#include <cstdint>
#include <string>

#include "fuzz/RoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // The copy ends where the input ends, so that reading past it is noticed.
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  if (corvane::faultInBinary(bytes).empty()) corvane::roundTrip(corvane::decodeBinary(bytes));
  return 0;
}
