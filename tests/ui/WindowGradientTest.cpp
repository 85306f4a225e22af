#include "ui/WindowGradient.h"

#include <gmock/gmock.h>
#include <array>
#include <memory>
#include <vector>

namespace corvane {
namespace {

using testing::ElementsAre;
using testing::FloatNear;

TEST(WindowGradientTest, GoesEvenlyFromStartToEnd) {
  const std::unique_ptr<Length, void (*)(void*)> record(
      makeGradientRecord({0, 0.5, 1, 0.9}, {1, 0.5, 0, 0.1}), releaseGradientRecord);
  ASSERT_NE(record, nullptr);
  const auto at = [&](Length position) {
    std::array<Length, 4> colour{};
    evaluateGradient(record.get(), &position, colour.data());
    return std::vector<float>(colour.begin(), colour.end());
  };
  const auto near = [](float value) { return FloatNear(value, 1e-5F); };
  EXPECT_THAT(at(0), ElementsAre(near(0), near(0.5F), near(1), near(0.9F)));
  EXPECT_THAT(at(0.25), ElementsAre(near(0.25F), near(0.5F), near(0.75F), near(0.7F)));
  EXPECT_THAT(at(1), ElementsAre(near(1), near(0.5F), near(0), near(0.1F)));
}

}  // namespace
}  // namespace corvane
