#include "tools/ditto/DeflateSeam.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <memory>
#include <optional>

namespace corvane::ditto {
namespace {

constexpr unsigned kLongestCode = 15;
constexpr std::size_t kLengthSymbols = 288;
constexpr std::size_t kDistanceSymbols = 32;
constexpr std::size_t kEndOfBlock = 256;
constexpr std::size_t kSpare = 16;  // bytes that may be looked at behind the end

// What is to be known of a code to go past it.
struct Step {
  std::uint8_t bits = 0;   // of the code and what belongs to it
  std::uint8_t value = 0;  // a Kind, or the symbol plus one; 0 for bits that are no code
};

enum Kind : std::uint8_t { invalid, literal, match, end };

class BitReader {
 public:
  BitReader(const unsigned char* bytes, std::size_t size) : bytes_(bytes), bits_(size * 8) {}

  /// The next 57 bits at least, the first one lowest; zeros behind the end.
  [[nodiscard]] std::uint64_t peek() const {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes_ + position_ / 8, sizeof word);
    if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
    return word >> (position_ % 8);
  }
  void skip(std::size_t bits) { position_ += bits; }
  [[nodiscard]] unsigned take(unsigned bits) {
    const auto value = static_cast<unsigned>(peek() & ((1U << bits) - 1));
    skip(bits);
    return value;
  }
  [[nodiscard]] bool isInside() const { return position_ <= bits_; }
  [[nodiscard]] std::size_t position() const { return position_; }

 private:
  const unsigned char* bytes_;
  std::size_t bits_;
  std::size_t position_ = 0;
};

unsigned extraBitsOfLength(std::size_t symbol) {
  return symbol < 265 || symbol == 285 ? 0 : static_cast<unsigned>(symbol - 261) / 4;
}

unsigned extraBitsOfDistance(std::size_t symbol) {
  return symbol < 4 ? 0 : static_cast<unsigned>(symbol - 2) / 2;
}

Step stepWith(unsigned bits, std::size_t value) {
  return {static_cast<std::uint8_t>(bits), static_cast<std::uint8_t>(value)};
}

Step lengthStep(std::size_t symbol, unsigned bits) {
  if (symbol < kEndOfBlock) return stepWith(bits, literal);
  return symbol == kEndOfBlock ? stepWith(bits, end) : stepWith(bits + extraBitsOfLength(symbol), match);
}

Step distanceStep(std::size_t symbol, unsigned bits) {
  return stepWith(bits + extraBitsOfDistance(symbol), match);
}

Step symbolStep(std::size_t symbol, unsigned bits) { return stepWith(bits, symbol + 1); }

unsigned reversed(unsigned code, unsigned length) {
  unsigned turned = 0;
  for (; length > 0; --length, code >>= 1) turned = turned << 1 | (code & 1);
  return turned;
}

// A canonical code: symbols of equal length in their order, shorter codes first. Its table has a step for all
// values of as many bits as the longest code has, the first bit lowest.
class Code {
 public:
  using StepOf = Step (*)(std::size_t symbol, unsigned bits);

  void set(std::span<const std::uint8_t> lengths, StepOf stepOf) {
    const unsigned longest = *std::max_element(lengths.begin(), lengths.end());
    unsigned code = 0;
    table_[0] = {};
    for (unsigned length = 1; length <= longest; ++length, code <<= 1) {
      // What has been filled repeats with each bit more.
      const auto half = table_.begin() + (std::ptrdiff_t{1} << (length - 1));
      std::copy(table_.begin(), half, half);
      for (std::size_t symbol = 0; symbol < lengths.size(); ++symbol) {
        if (lengths[symbol] == length) table_[reversed(code++, length) & kAllBits] = stepOf(symbol, length);
      }
    }
    mask_ = (std::size_t{1} << longest) - 1;
  }

  [[nodiscard]] Step step(std::uint64_t bits) const { return table_[bits & mask_]; }

 private:
  static constexpr unsigned kAllBits = (1U << kLongestCode) - 1;

  std::array<Step, kAllBits + 1> table_;
  std::size_t mask_ = 0;
};

class Walk {
 public:
  Walk(const unsigned char* bytes, std::size_t size) : in_(bytes, size) {}

  struct End {
    std::size_t mark;  // the bit that marks the last block
    std::size_t bits;  // in the stream
  };

  std::optional<End> toEnd() {
    while (in_.isInside()) {
      const std::size_t mark = in_.position();
      const bool last = in_.take(1) != 0;
      if (!passBlock(in_.take(2))) return std::nullopt;
      if (last) return in_.isInside() ? std::optional<End>({mark, in_.position()}) : std::nullopt;
    }
    return std::nullopt;
  }

 private:
  bool passBlock(unsigned kind) {
    if (kind == 0) return passStored();
    if (kind == 1) useFixedCode();
    if (kind == 2 && !readCode()) return false;
    return kind != 3 && passSymbols();
  }

  bool passStored() {
    in_.skip((8 - in_.position() % 8) % 8);
    const unsigned size = in_.take(16);
    in_.skip(16 + std::size_t{8} * size);
    return in_.isInside();
  }

  void useFixedCode() {
    std::array<std::uint8_t, kLengthSymbols> lengths{};
    for (std::size_t i = 0; i < lengths.size(); ++i) lengths[i] = i < 144 ? 8 : i < 256 ? 9 : i < 280 ? 7 : 8;
    std::array<std::uint8_t, kDistanceSymbols> distances{};
    distances.fill(5);
    lengths_.set(lengths, lengthStep);
    distances_.set(distances, distanceStep);
  }

  bool readCode() {
    constexpr std::array<std::uint8_t, 19> kOrder = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                     11, 4,  12, 3, 13, 2, 14, 1, 15};
    const std::size_t lengthCount = in_.take(5) + 257;
    const std::size_t distanceCount = in_.take(5) + 1;
    const std::size_t given = in_.take(4) + 4;
    std::array<std::uint8_t, 19> own{};
    for (std::size_t i = 0; i < given; ++i) own[kOrder[i]] = static_cast<std::uint8_t>(in_.take(3));
    lengths_.set(own, symbolStep);
    std::array<std::uint8_t, kLengthSymbols + kDistanceSymbols> lengths{};
    const auto used = std::span(lengths).first(lengthCount + distanceCount);
    if (!readLengths(used)) return false;
    lengths_.set(used.first(lengthCount), lengthStep);
    distances_.set(used.subspan(lengthCount), distanceStep);
    return true;
  }

  // Both codes' lengths in one row, packed by the code that lengths_ holds at first.
  bool readLengths(std::span<std::uint8_t> lengths) {
    for (std::size_t done = 0; done < lengths.size() && in_.isInside();) {
      const Step step = lengths_.step(in_.peek());
      if (step.value == invalid) return false;
      in_.skip(step.bits);
      auto value = static_cast<std::uint8_t>(step.value - 1);
      std::size_t count = 1;
      if (value == 16) count = 3 + in_.take(2);
      if (value == 17) count = 3 + in_.take(3);
      if (value == 18) count = 11 + in_.take(7);
      if (count > lengths.size() - done || (value == 16 && done == 0)) return false;
      if (value >= 16) value = value == 16 ? lengths[done - 1] : std::uint8_t{0};
      for (; count > 0; --count) lengths[done++] = value;
    }
    return in_.isInside();
  }

  bool passSymbols() {
    while (in_.isInside()) {
      const std::uint64_t bits = in_.peek();
      Step step = lengths_.step(bits);
      // Literals come in rows: three codes' bits are at hand.
      unsigned passed = step.bits;
      for (int more = 0; more < 2 && step.value == literal; ++more) {
        step = lengths_.step(bits >> passed);
        passed += step.bits;
      }
      in_.skip(passed);
      if (step.value == literal) continue;
      if (step.value != match) return step.value == end;
      const Step distance = distances_.step(in_.peek());
      if (distance.value == invalid) return false;
      in_.skip(distance.bits);
    }
    return false;
  }

  BitReader in_;
  Code lengths_;
  Code distances_;
};

}  // namespace

bool openEnd(Buffer& stream, std::size_t start) {
  const std::size_t size = stream.size() - start;
  std::memset(stream.room(kSpare).data(), 0, kSpare);
  // Its tables are too large for the stack of some systems' threads.
  const auto end = std::make_unique<Walk>(stream.data() + start, size)->toEnd();
  if (!end) return false;
  stream.data()[start + end->mark / 8] &= static_cast<unsigned char>(~(1U << end->mark % 8));
  // An empty stored block: three bits of zero, no more until the byte is full, the size and its complement.
  constexpr unsigned char kEmpty[] = {0, 0, 0, 0xff, 0xff};
  const bool fits = (end->bits + 3 + 7) / 8 <= size;
  stream.append(Bytes(kEmpty).subspan(fits ? 1 : 0));
  return true;
}

}  // namespace corvane::ditto
