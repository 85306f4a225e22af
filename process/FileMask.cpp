#include "process/FileMask.h"

#include <sys/stat.h>
#include <array>
#include <cstdio>
#include <cstdlib>

namespace corvane {
namespace {

constexpr mode_t kPrivate = 077;
constexpr int kOctal = 8;

}  // namespace

void keepNewFilesPrivate() {
  std::array<char, 16> digits{};
  std::snprintf(digits.data(), digits.size(), "%03o", static_cast<unsigned>(::umask(kPrivate)));
  ::setenv(kFileMaskVariable, digits.data(), 1);
}

UsersFileMask::UsersFileMask() : before_(::umask(kPrivate)) {
  const char* digits = std::getenv(kFileMaskVariable);
  const bool known = digits && *digits;
  ::umask(known ? static_cast<mode_t>(std::strtoul(digits, nullptr, kOctal)) & 0777 : before_);
}

UsersFileMask::~UsersFileMask() { ::umask(before_); }

}  // namespace corvane
