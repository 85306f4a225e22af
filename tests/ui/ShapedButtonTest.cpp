#include <gmock/gmock.h>
#include <sys/mman.h>
#include <bit>
#include <cmath>
#include <numeric>
#include <random>
#include <vector>

#include "ui/Darkening.h"
#include "ui/ShapedHit.h"

namespace corvane {
namespace {

using Bytes = std::vector<std::uint8_t>;

// Two rows of 2 pixels of 4 bytes and one that fills the row up. Alpha: 127, 128; 255, 0.
TEST(ShapedHitTest, TellsTheAlphaUnderThePoint) {
  Bytes bytes{0, 0, 0, 127, 255, 255, 255, 128, 0, 9, 9, 9, 255, 99, 99, 200, 0, 255};
  const struct {
    std::size_t perRow, bits, samples;
    std::vector<Point> hits, misses;
  } rows[] = {{9, 32, 4, {{1, 0}, {0, 1}, {1.9F, 0.9F}}, {{0, 0}, {0.9F, 0.9F}, {1.5, 1.5}}},
              {9, 32, 4, {{2, 1}, {0, 2}, {-1, 0}}, {{2, 0}, {-1, 1}}},  // bytes 20, 21, -1; 11 and 8
              {9, 33, 4, {{1, 0}}, {}},
              {9, 24, 3, {{1, 1}, {1, 0}}, {{0, 0}}},  // 7; 15, 6, 3
              {9, 16, 2, {{0, 1}}, {{1, 1}, {0, 0}}},  // 12; 14, 3
              {SIZE_MAX, 32, 4, {{0, 1}, {NAN, 0}, {HUGE_VALF, 0}}, {}}};
  for (const auto& row : rows) {
    const Bitmap picture{bytes, row.perRow, row.bits, row.samples, true, false};
    for (const Point point : row.hits) EXPECT_TRUE(shapedHit(picture, point).isHit) << point.x << point.y;
    for (const Point point : row.misses) EXPECT_FALSE(shapedHit(picture, point).isHit) << point.x << point.y;
  }
}

TEST(ShapedHitTest, UnfitPicturesBlockNoClick) {
  Bytes clear(64);
  const std::string unfit = "Bits per Pixel/Samples per Pixel != 8: ";
  const std::tuple<std::size_t, std::size_t, bool, bool, std::string> rows[] = {
      {24, 3, false, false, ""},
      {64, 4, false, true, ""},
      {64, 4, true, false, unfit + "64/4"},
      {64, 4, true, true, "planar bitmap formats not supported"},
      {32, 3, true, false, unfit + "32/3"},
      {32, 0, true, false, unfit + "32/0"}};
  for (const auto& [bits, samples, hasAlpha, isPlanar, problem] : rows) {
    const auto hit = shapedHit({clear, 8, bits, samples, hasAlpha, isPlanar}, {0, 0});
    EXPECT_TRUE(hit.isHit && hit.problem == problem) << problem << hit.problem;
  }
}

TEST(DarkeningTest, LowersEachColourByWhatTheOtherLacks) {
  const std::tuple<Bytes, DarkeningColour, Bytes> rows[] = {
      {{0, 1, 255, 7}, {1, 1, 1}, {0, 0, 254, 7}},
      {{255, 128, 1, 255}, {0, 0, 0}, {0, 0, 0, 255}},
      {{255, 128, 129, 0}, {0.5, 0.5, 0.5}, {127, 0, 1, 0}},      // by 128
      {{200, 200, 255, 200}, {1, 0.5, 0.1}, {199, 72, 25, 200}},  // by 1, 128, 230
      {{255, 255, 255, 9}, {2, -1, NAN}, {254, 0, 0, 9}}};
  for (auto [from, colour, to] : rows) {
    Bytes target(4);
    darken({from, 4, 32}, {target, 4, 32}, {1, 1}, colour);
    EXPECT_EQ(target, to);
  }
}

// The bytes of the source are 11 to 27.
TEST(DarkeningTest, FollowsTheStridesOfBoth) {
  Bytes source(17);
  std::iota(source.begin(), source.end(), std::uint8_t{11});
  const struct {
    std::size_t perRow, bits;
    Bytes to;  // 2 x 2 pixels, 9 bytes a row
  } rows[] = {{9, 32, {10, 11, 12, 14, 14, 15, 16, 18, 77, 19, 20, 21, 23, 23, 24, 25, 27, 77}},
              {6, 24, {10, 11, 12, 14, 13, 14, 15, 17, 77, 16, 17, 18, 20, 19, 20, 21, 23, 77}},
              {14, 24, {10, 11, 12, 14, 13, 14, 15, 17, 77, 77, 77, 77, 77, 77, 77, 77, 77, 77}},
              {12, 64, {10, 11, 12, 14, 18, 19, 20, 22, 77, 22, 23, 24, 26, 77, 77, 77, 77, 77}},
              {5, 8, {10, 11, 12, 14, 11, 12, 13, 15, 77, 15, 16, 17, 19, 16, 17, 18, 20, 77}}};
  for (const auto& row : rows) {
    Bytes target(18, 77);
    darken({source, row.perRow, row.bits}, {target, 9, 32}, {2, 2}, {1, 1, 1});
    darken({source, row.perRow, row.bits}, {target, 9, 32}, {0, 2}, {0, 0, 0});
    EXPECT_EQ(target, row.to) << row.perRow << ' ' << row.bits;
  }
}

// 4096 bytes between two pages that cannot be touched.
std::span<std::uint8_t> islandOfBytes() {
  void* sea = ::mmap(nullptr, 3 * 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  auto* island = static_cast<std::uint8_t*>(sea) + 4096;
  EXPECT_EQ(::mprotect(island, 4096, PROT_READ | PROT_WRITE), 0);
  return {island, 4096};
}

TEST(DarkeningTest, NeverLeavesTheBytesWhateverTheNumbersClaim) {
  const auto from = islandOfBytes(), to = islandOfBytes();
  std::mt19937_64 random(1);
  const auto number = [&] { return static_cast<std::size_t>(random() >> random() % 64); };
  const auto size = [&] { return static_cast<std::size_t>(random() % 4097); };
  for (int round = 0; round < 20000; ++round) {
    const Bitmap source{from.last(size()), number(), number(), number(), true, false};
    darken(source, {to.first(size()), 64 + number(), 8 + number()}, {number(), number()}, {});
    (void)shapedHit({from, number(), 32, 4, true}, {static_cast<Length>(number()), Length(number())});
    (void)shapedHit({from, number(), 32, 4, true}, {static_cast<Length>(std::bit_cast<double>(random())), 1});
  }
}

}  // namespace
}  // namespace corvane
