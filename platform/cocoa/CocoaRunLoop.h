// The run loop of the application, for runs with a window.
// Owner: the interface file's controller object. Thread: main.
#pragma once

#include "process/RunLoop.h"

namespace corvane {

class CocoaRunLoop : public RunLoop {
 public:
  [[nodiscard]] std::unique_ptr<Source> repeat(double seconds, std::function<void()> fire) override;
  [[nodiscard]] std::unique_ptr<Source> read(int descriptor, ReadHandler handler) override;
};

}  // namespace corvane
