#include "platform/headless/HeadlessDisplay.h"

#include <utility>

namespace corvane {

void HeadlessDisplay::awaitDismissal(std::function<void()> dismiss) {
  dismissal_ = runLoop_.repeat(0.0, [this, dismiss = std::move(dismiss)] {
    const auto once = std::move(dismissal_);
    dismiss();
  });
}

}  // namespace corvane
