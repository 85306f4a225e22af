#import "platform/cocoa/CompletionNotification.h"

#import <Foundation/Foundation.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "process/Log.h"

namespace corvane {
namespace {

using namespace std::chrono_literals;
constexpr std::chrono::milliseconds kPatience = 5s;

/// A thread of its own talks to the notification daemon, which may be stopped and then never answers. It and
/// what it shares with the poster are left to themselves when that happens.
class Poster {
 public:
  void postSoon(const std::string& name) {
    std::unique_lock lock(shared_->mutex);
    if (shared_->pending) return;  // the daemon still owes an answer: it is not waited for again
    shared_->pending = true;
    shared_->name = name;
    if (!isStarted_ && !start()) return;
    shared_->changed.notify_all();
    const auto limit = std::exchange(patience_, 0s);  // all calls together wait no longer than one
    const auto start = std::chrono::steady_clock::now();
    if (shared_->changed.wait_for(lock, limit, [this] { return !shared_->pending; })) {
      const auto taken = std::chrono::steady_clock::now() - start;
      patience_ = limit - std::chrono::duration_cast<std::chrono::milliseconds>(taken);
    } else {
      log("cannot post " + name + ": the notification daemon does not answer");
    }
  }

 private:
  // Where no thread can be had, nothing is announced.
  bool start() {
    try {
      std::thread(serve, shared_).detach();
      isStarted_ = true;
    } catch (const std::system_error& error) {
      log(std::string("cannot announce the end: ") + error.what());
    }
    return isStarted_;
  }

  struct Shared {
    std::mutex mutex;
    std::condition_variable changed;
    std::string name;
    bool pending = false;
  };

  // All on one thread: the connection to the daemon belongs to the thread that made it.
  static void serve(std::shared_ptr<Shared> shared) {
    GSRegisterCurrentThread();
    for (;;) {
      std::unique_lock lock(shared->mutex);
      shared->changed.wait(lock, [&] { return shared->pending; });
      const std::string name = shared->name;
      lock.unlock();
      postNow(name);
      lock.lock();
      shared->pending = false;
      shared->changed.notify_all();
    }
  }

  const std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();
  bool isStarted_ = false;
  std::chrono::milliseconds patience_ = kPatience;
};

}  // namespace

void postDistributedNotification(const std::string& name) {
  static Poster poster;
  poster.postSoon(name);
}

}  // namespace corvane
