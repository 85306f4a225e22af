#include "ui/ControlShapes.h"

namespace corvane {
namespace {

constexpr Length kStripeWidth = 8;
constexpr Length kPeriod = 2 * kStripeWidth;

}  // namespace

Rect filledPart(Rect bar, double fraction) {
  const double part = fraction > 0 ? (fraction < 1 ? fraction : 1) : 0;
  bar.width *= static_cast<Length>(part);
  return bar;
}

std::vector<Stripe> stripes(Rect bar, int step) {
  const int phase = ((step % kStripeSteps) + kStripeSteps) % kStripeSteps;
  const Length slant = bar.height;
  const Length right = bar.x + bar.width;
  const Length top = bar.y + bar.height;
  std::vector<Stripe> all;
  for (Length x = bar.x - slant - kPeriod + kPeriod * static_cast<Length>(phase) / kStripeSteps; x < right;
       x += kPeriod) {
    all.push_back(
        {{{x, bar.y}, {x + kStripeWidth, bar.y}, {x + kStripeWidth + slant, top}, {x + slant, top}}});
  }
  return all;
}

}  // namespace corvane
