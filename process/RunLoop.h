// Port: the main thread's run loop, as far as the run needs it.
// Owner: the composition root. Thread: main; every callback arrives there, one at a time.
#pragma once

#include <functional>
#include <memory>
#include <string_view>

namespace corvane {

class RunLoop {
 public:
  /// A timer or a reader. Destroying it stops it: no callback begins afterwards. It may be destroyed from
  /// inside its own callback.
  class Source {
   public:
    virtual ~Source() = default;
  };

  /// Bytes of one read; empty at end of file. Valid during the call only.
  using ReadHandler = std::function<void(std::string_view bytes)>;

  virtual ~RunLoop() = default;

  /// Calls `fire` every `seconds`, the first time after `seconds`, until the result is destroyed.
  [[nodiscard]] virtual std::unique_ptr<Source> repeat(double seconds, std::function<void()> fire) = 0;

  /// Reads `descriptor` in the background and hands over whatever one read returns. A read takes all that a
  /// pipe can hold, so that no line written in one piece is split. End of file, and an error alike, is
  /// reported once, then no more. The descriptor stays the caller's and must outlive the result.
  [[nodiscard]] virtual std::unique_ptr<Source> read(int descriptor, ReadHandler handler) = 0;
};

}  // namespace corvane
