#include <gmock/gmock.h>
#include <sys/mman.h>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "ui/Darkening.h"
#include "ui/ShapedButtonLook.h"
#include "ui/ShapedHit.h"

namespace corvane {
namespace {

using Bytes = std::vector<std::uint8_t>;
constexpr double inf = std::numeric_limits<double>::infinity();
constexpr auto most = std::numeric_limits<std::size_t>::max();

// Two rows of 2 pixels of 4 bytes and one that fills the row up. Alpha: 127, 128; 255, 0.
TEST(ShapedHitTest, AlphaOfThePixelUnderThePoint) {
  Bytes bytes{0, 0, 0, 127, 255, 255, 255, 128, 0, 9, 9, 9, 255, 99, 99, 200, 0, 255};
  const struct {
    double x, y;
    std::size_t bits, samples, row;
    bool isHit;
  } rows[] = {
      {0, 0, 32, 4, 9, false},     {0.99, 0.99, 32, 4, 9, false},
      {1, 0, 32, 4, 9, true},      {0, 1, 32, 4, 9, true},
      {1.5, 1.5, 32, 4, 9, false}, {2, 0, 32, 4, 9, false},  // byte 11, already in the next row
      {2, 1, 32, 4, 9, true},                                // byte 20 of 18
      {0, 2, 32, 4, 9, true},      {-1, 0, 32, 4, 9, true},  // bytes 21 and -1
      {-1, 1, 32, 4, 9, false},                              // byte 8
      {1, 0, 33, 4, 9, true},                                // four bytes and an eighth
      {1, 1, 24, 3, 9, true},      {1, 0, 24, 3, 9, true},   // bytes 15 and 6
      {0, 1, 16, 2, 9, true},      {1, 1, 16, 2, 9, false},  // bytes 12 and 14
      {0, 1, 32, 4, most, true},   {inf, 0, 32, 4, 9, true},
      {0, -1e300, 32, 4, 9, true}, {NAN, NAN, 32, 4, 9, true},
  };
  for (const auto& row : rows) {
    const Bitmap picture{bytes, row.row, row.bits, row.samples, true, false};
    const auto hit = shapedHit(picture, {Length(row.x), Length(row.y)});
    EXPECT_EQ(hit.isHit, row.isHit) << row.x << ',' << row.y << ' ' << row.bits << '/' << row.samples;
    EXPECT_EQ(hit.problem, "");
  }
}

TEST(ShapedHitTest, UnfitPicturesBlockNoClick) {
  Bytes clear(64);
  const struct {
    Bitmap picture;
    const char* problem;
  } rows[] = {
      {{clear, 8, 24, 3, false, false}, ""},
      {{clear, 8, 64, 4, false, true}, ""},
      {{{}, 8, 32, 4, true, false}, ""},
      {{clear, 8, 8, 4, true, true}, "planar bitmap formats not supported"},
      {{clear, 8, 64, 4, true, false}, "Bits per Pixel/Samples per Pixel != 8: 64/4"},
      {{clear, 8, 32, 3, true, false}, "Bits per Pixel/Samples per Pixel != 8: 32/3"},
      {{clear, 8, 32, 0, true, false}, "Bits per Pixel/Samples per Pixel != 8: 32/0"},
  };
  for (const auto& row : rows) {
    const auto hit = shapedHit(row.picture, {0, 0});
    EXPECT_TRUE(hit.isHit) << row.problem;
    EXPECT_EQ(hit.problem, row.problem);
  }
}

TEST(DarkeningTest, LowersEachColourByWhatTheOtherLacks) {
  const struct {
    Bytes from;
    DarkeningColour colour;
    Bytes to;
  } rows[] = {
      {{0, 1, 255, 7}, {1, 1, 1}, {0, 0, 254, 7}},
      {{255, 128, 1, 255}, {0, 0, 0}, {0, 0, 0, 255}},
      {{255, 128, 129, 0}, {0.5, 0.5, 0.5}, {127, 0, 1, 0}},      // by 128
      {{200, 200, 255, 200}, {1, 0.5, 0.1}, {199, 72, 25, 200}},  // by 1, 128, 230
      {{255, 255, 255, 9}, {2, -1, NAN}, {254, 0, 0, 9}},
  };
  for (auto row : rows) {
    Bytes target(4);
    darken({row.from, 4, 32}, {target, 4, 32}, {1, 1}, row.colour);
    EXPECT_EQ(target, row.to);
  }
}

TEST(DarkeningTest, FollowsTheStridesOfBoth) {
  const struct {
    Bytes from;
    std::size_t row, bits;
    Bytes to;
  } rows[] = {
      {{11, 12, 13, 14, 21, 22, 23, 24, 99, 31, 32, 33, 34, 41, 42, 43, 44, 99},
       9,
       32,
       {10, 11, 12, 14, 20, 21, 22, 24, 77, 77, 30, 31, 32, 34, 40, 41, 42, 44, 77, 77}},
      {{11, 12, 13, 21, 22, 23, 31, 32, 33, 41, 42, 43},
       6,
       24,  // the last has no fourth byte
       {10, 11, 12, 21, 20, 21, 22, 31, 77, 77, 30, 31, 32, 41, 77, 77, 77, 77, 77, 77}},
      {{11, 12, 13, 14, 15, 16, 17, 18, 21, 22, 23, 24},
       12,
       64,  // 16 bits a sample; one row
       {10, 11, 12, 14, 20, 21, 22, 24, 77, 77, 77, 77, 77, 77, 77, 77, 77, 77, 77, 77}},
      {{11, 12, 13, 14, 15},
       5,
       8,  // a plane of 5 x 1
       {10, 11, 12, 14, 11, 12, 13, 15, 77, 77, 77, 77, 77, 77, 77, 77, 77, 77, 77, 77}},
  };
  for (auto row : rows) {
    Bytes target(20, 77);
    darken({row.from, row.row, row.bits}, {target, 10, 32}, {2, 2}, {1, 1, 1});
    EXPECT_EQ(target, row.to) << row.bits;
    darken({row.from, row.row, row.bits}, {target, 10, 32}, {0, 2}, {0, 0, 0});
    EXPECT_EQ(target, row.to) << row.bits;
  }
}

TEST(DarkeningTest, MakesWholePixelsOfASize) {
  const struct {
    double width, height;
    std::optional<PixelSize> pixels;
  } rows[] = {
      {10.9, 3.2, {{10, 3}}}, {0.99, 5, {{0, 5}}}, {-5, NAN, {{0, 0}}}, {65536, 8191, {{65536, 8191}}},
      {65536, 8192, {}},      {1e30, 1, {}},       {inf, inf, {}}};
  for (const auto& row : rows) {
    EXPECT_EQ(darkenedPixels({Length(row.width), Length(row.height)}), row.pixels) << row.width;
  }
}

// 4096 bytes between two pages that cannot be touched.
std::span<std::uint8_t> islandOfBytes() {
  auto* sea =
      static_cast<std::uint8_t*>(::mmap(nullptr, 3 * 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
  ::mprotect(sea + 4096, 4096, PROT_READ | PROT_WRITE);
  return {sea + 4096, 4096};
}

TEST(DarkeningTest, NeverLeavesTheBytesWhateverTheNumbersClaim) {
  const auto from = islandOfBytes();
  const auto to = islandOfBytes();
  std::mt19937_64 random(1);
  const auto number = [&] { return std::size_t{random()} >> random() % 64; };
  for (int round = 0; round < 20000; ++round) {
    const Bitmap source{from.last(random() % 4097), number(), number(), number(), true, random() % 8 == 0};
    const Bitmap target{to.first(random() % 4097), 64 + number(), 8 + number()};
    darken(source, target, {number(), number()}, {0.5, 0.5, 0.5});
    (void)shapedHit(source, {std::bit_cast<double>(random()), static_cast<double>(number())});
    (void)shapedHit(source, {static_cast<double>(number()), static_cast<double>(number())});
  }
  for (const auto bytes : {from, to}) ::munmap(bytes.data() - 4096, 3 * 4096);
}

TEST(ShapedButtonLookTest, FollowsTheConditionOfTheButton) {
  const struct {
    ButtonCondition condition;  // enabled, highlighted, shows its state, on
    ButtonLook look;            // alternate, darkened, fraction
  } rows[] = {
      {{true, false, false, false}, {false, false, 1}}, {{true, false, true, false}, {false, false, 1}},
      {{true, false, false, true}, {false, false, 1}},  {{true, false, true, true}, {true, false, 1}},
      {{true, true, false, false}, {true, false, 1}},   {{true, true, true, false}, {true, true, 1}},
      {{true, true, true, true}, {true, true, 1}},      {{true, true, false, true}, {true, false, 1}},
      {{false, true, true, true}, {false, false, 0.4}}, {{false, false, false, false}, {false, false, 0.4}},
  };
  for (const auto& row : rows) EXPECT_EQ(shapedButtonLook(row.condition), row.look) << &row - rows;
}

TEST(ShapedButtonLookTest, NamesThePictureOfEachTint) {
  EXPECT_EQ(untintedImageName("PlayAquaPressed Aqua"), "Play");
  EXPECT_EQ(untintedImageName("Aqua"), "");
  EXPECT_EQ(untintedImageName("Playaqua"), std::nullopt);
  EXPECT_EQ(tintedImageName("Play", false), "PlayAqua");
  EXPECT_EQ(tintedImageName("Play", true), "PlayGraphite");
}

}  // namespace
}  // namespace corvane
