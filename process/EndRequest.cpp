#include "process/EndRequest.h"

#include <atomic>

namespace corvane {
namespace {

std::atomic<bool> requested = false;
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler must not wait");

}  // namespace

void requestEnd() noexcept { requested = true; }

bool isEndRequested() noexcept { return requested; }

void forgetEndRequest() noexcept { requested = false; }

}  // namespace corvane
