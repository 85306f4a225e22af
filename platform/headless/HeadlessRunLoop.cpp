#include "platform/headless/HeadlessRunLoop.h"

#include <poll.h>
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <utility>

#include "process/PipeRead.h"

namespace corvane {
namespace {

using Clock = std::chrono::steady_clock;

// What the caller holds; the loop holds only weak pointers, and so notices when it is gone.
template <typename T>
struct Handle : RunLoop::Source {
  explicit Handle(std::shared_ptr<T> held) : item(std::move(held)) {}
  std::shared_ptr<T> item;
};

// The items still held by somebody. They stay alive through the round in which they are served, also when
// their own callback lets go of them.
template <typename T>
std::vector<std::shared_ptr<T>> living(std::vector<std::weak_ptr<T>>& items) {
  std::erase_if(items, [](const std::weak_ptr<T>& item) { return item.expired(); });
  std::vector<std::shared_ptr<T>> held;
  for (const auto& item : items) held.push_back(item.lock());
  return held;
}

}  // namespace

struct HeadlessRunLoop::Timer {
  Clock::duration interval;
  Clock::time_point due;
  std::function<void()> fire;
};

struct HeadlessRunLoop::Reader {
  int descriptor;
  ReadHandler handler;
};

HeadlessRunLoop::HeadlessRunLoop() = default;
HeadlessRunLoop::~HeadlessRunLoop() = default;

std::unique_ptr<RunLoop::Source> HeadlessRunLoop::repeat(double seconds, std::function<void()> fire) {
  const auto interval = std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
  auto timer = std::make_shared<Timer>(Timer{interval, Clock::now() + interval, std::move(fire)});
  timers_.push_back(timer);
  return std::make_unique<Handle<Timer>>(std::move(timer));
}

std::unique_ptr<RunLoop::Source> HeadlessRunLoop::read(int descriptor, ReadHandler handler) {
  auto reader = std::make_shared<Reader>(Reader{descriptor, std::move(handler)});
  readers_.push_back(reader);
  return std::make_unique<Handle<Reader>>(std::move(reader));
}

void HeadlessRunLoop::run() {
  while (!stopped_ && !(living(timers_).empty() && living(readers_).empty())) {
    waitAndRead();
    if (!stopped_) fireDueTimers();
  }
}

void HeadlessRunLoop::fireDueTimers() {
  const auto now = Clock::now();
  for (const auto& timer : living(timers_)) {
    if (timer.use_count() == 1 || timer->due > now) continue;  // let go of, or early
    timer->due = now + timer->interval;
    timer->fire();
  }
}

void HeadlessRunLoop::waitAndRead() {
  int timeout = -1;
  for (const auto& timer : living(timers_)) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(timer->due - Clock::now()).count();
    const int wait = static_cast<int>(std::max<std::int64_t>(left, 0));
    timeout = timeout < 0 ? wait : std::min(timeout, wait);
  }
  const auto readers = living(readers_);
  std::vector<pollfd> waits;
  for (const auto& reader : readers) waits.push_back({reader->descriptor, POLLIN, 0});
  if (::poll(waits.data(), static_cast<nfds_t>(waits.size()), timeout) <= 0) return;
  for (std::size_t i = 0; i < readers.size(); ++i) {
    if (waits[i].revents == 0 || readers[i].use_count() == 1) continue;
    readOnce(readers[i]->descriptor, buffer_);
    // An ended one is forgotten first, so that nothing waits for it, whoever still holds it.
    if (buffer_.empty()) std::erase_if(readers_, [&](auto& reader) { return reader.lock() == readers[i]; });
    readers[i]->handler(buffer_);
  }
}

}  // namespace corvane
