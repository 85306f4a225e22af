#include "process/PercentEncoding.h"

namespace corvane {
namespace {

constexpr std::string_view kUnreserved =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_.!~*'()";

}  // namespace

std::string percentEncoded(std::string_view text, std::string_view more) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  constexpr auto npos = std::string_view::npos;
  std::string encoded;
  for (const char byte : text) {
    if (kUnreserved.find(byte) != npos || more.find(byte) != npos) {
      encoded += byte;
    } else {
      const auto value = static_cast<unsigned char>(byte);
      encoded += {'%', kDigits[value / 16], kDigits[value % 16]};
    }
  }
  return encoded;
}

}  // namespace corvane
