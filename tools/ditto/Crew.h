// The threads that pack. Owner: the thread that writes, which also handles the signals: these leave them to
// it.
#pragma once

#include <cstddef>
#include <thread>
#include <vector>

#include "tools/ditto/Packer.h"

namespace corvane::ditto {

/// What all of them share; outlives them.
struct Workshop {
  const ArchiveNames& names;
  bool verbose;
  WorkQueue& queue;
  Outbox& outbox;
};

class Crew {
 public:
  /// Sets `size` threads to work. Those that the system refuses are reported to the outbox as ended, and the
  /// others do their work.
  Crew(std::size_t size, const Workshop& workshop);
  /// Has the threads stop and waits for them.
  ~Crew();
  Crew(const Crew&) = delete;
  Crew& operator=(const Crew&) = delete;

 private:
  Workshop workshop_;
  std::vector<std::thread> threads_;
};

/// Enough to keep the processors of this program and the disk at work.
[[nodiscard]] std::size_t usefulThreads();

}  // namespace corvane::ditto
