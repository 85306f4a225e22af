#include "process/PipeRead.h"

#include <poll.h>
#include <unistd.h>
#include <cerrno>

namespace corvane {
namespace {

// More than the 64 KiB that a pipe holds by default: one read empties it, and since writers put short lines
// in whole, none of them is cut in two.
constexpr std::size_t kReadSize = std::size_t{256} * 1024;

}  // namespace

bool readOnce(int descriptor, std::string& buffer) {
  buffer.resize(kReadSize);
  ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
  while (count < 0 && (errno == EINTR || errno == EAGAIN)) {
    // A run loop may have made the descriptor non-blocking.
    pollfd ready{descriptor, POLLIN, 0};
    ::poll(&ready, 1, -1);
    count = ::read(descriptor, buffer.data(), buffer.size());
  }
  buffer.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
  return count >= 0;
}

}  // namespace corvane
