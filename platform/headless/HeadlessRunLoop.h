// The run loop of a run without a display: timers and reads on poll(2).
// Owner: the headless main. Thread: main.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "process/RunLoop.h"

namespace corvane {

class HeadlessRunLoop : public RunLoop {
 public:
  HeadlessRunLoop();
  ~HeadlessRunLoop() override;

  [[nodiscard]] std::unique_ptr<Source> repeat(double seconds, std::function<void()> fire) override;
  [[nodiscard]] std::unique_ptr<Source> read(int descriptor, ReadHandler handler) override;

  /// Serves timers and reads until `stop` is called or nothing is left to wait for.
  void run();
  void stop() { stopped_ = true; }

 private:
  struct Timer;
  struct Reader;
  void fireDueTimers();
  void waitAndRead();

  std::vector<std::weak_ptr<Timer>> timers_;
  std::vector<std::weak_ptr<Reader>> readers_;
  std::string buffer_;
  bool stopped_ = false;
};

}  // namespace corvane
