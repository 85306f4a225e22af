#include "tools/ditto/Crew.h"

#include <algorithm>
#include <exception>
#include <string>

#include "tools/ditto/TargetFile.h"

namespace corvane::ditto {
namespace {

// While some wait for the disk, others compress; each more needs some megabytes of memory.
constexpr std::size_t kFewestThreads = 4;
constexpr std::size_t kMostThreads = 8;

void work(const Workshop& workshop) {
  std::string problem;
  try {
    Packer(workshop.names, workshop.verbose, workshop.queue, workshop.outbox).work();
  } catch (const std::exception& failure) {
    problem = failure.what();
    workshop.queue.stop();
  }
  workshop.outbox.makerEnded(problem);
}

}  // namespace

Crew::Crew(std::size_t size, const Workshop& workshop) : workshop_(workshop) {
  threads_.reserve(size);
  const SignalsHeldBack heldBack;  // threads inherit it
  std::string problem;
  for (std::size_t i = 0; i < size; ++i) {
    try {
      threads_.emplace_back([this] { work(workshop_); });
    } catch (const std::exception& refused) {  // for want of threads or of memory
      problem = threads_.empty() && i + 1 == size ? refused.what() : "";
      workshop_.outbox.makerEnded(problem);
    }
  }
}

Crew::~Crew() {
  workshop_.queue.stop();
  workshop_.outbox.setDemand(Demand::nothing);
  for (std::thread& thread : threads_) thread.join();
}

std::size_t usefulThreads() {
  return std::clamp<std::size_t>(2 * std::thread::hardware_concurrency(), kFewestThreads, kMostThreads);
}

}  // namespace corvane::ditto
