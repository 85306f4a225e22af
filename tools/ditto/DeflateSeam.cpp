#include "tools/ditto/DeflateSeam.h"

#include <array>
#include <cstdint>
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
  enum Kind : std::uint8_t { invalid, literal, match, end };
  std::uint8_t bits = 0;  // of the code and what belongs to it
  Kind kind = invalid;
  std::uint8_t symbol = 0;
};

using Table = std::array<Step, std::size_t{1} << kLongestCode>;

class BitReader {
 public:
  BitReader(const unsigned char* bytes, std::size_t size) : bytes_(bytes), bits_(size * 8) {}

  /// The next 57 bits at least, the first one lowest; zeros behind the end.
  [[nodiscard]] std::uint64_t peek() const {
    std::uint64_t word = 0;
    for (unsigned i = 0; i < 8; ++i) word |= std::uint64_t{bytes_[position_ / 8 + i]} << (8 * i);
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

Step lengthStep(std::size_t symbol, unsigned length) {
  if (symbol < kEndOfBlock) return {static_cast<std::uint8_t>(length), Step::literal, 0};
  if (symbol == kEndOfBlock) return {static_cast<std::uint8_t>(length), Step::end, 0};
  return {static_cast<std::uint8_t>(length + extraBitsOfLength(symbol)), Step::match, 0};
}

Step distanceStep(std::size_t symbol, unsigned length) {
  return {static_cast<std::uint8_t>(length + extraBitsOfDistance(symbol)), Step::match, 0};
}

Step plainStep(std::size_t symbol, unsigned length) {
  return {static_cast<std::uint8_t>(length), Step::literal, static_cast<std::uint8_t>(symbol)};
}

unsigned reversed(unsigned code, unsigned length) {
  unsigned turned = 0;
  for (; length > 0; --length, code >>= 1) turned = turned << 1 | (code & 1);
  return turned;
}

// The canonical code: symbols of equal length in their order, shorter codes first, the first bit lowest.
void fill(Table& table, std::span<const std::uint8_t> lengths, Step (*stepOf)(std::size_t, unsigned)) {
  table.fill({});
  unsigned code = 0;
  for (unsigned length = 1; length <= kLongestCode; ++length, code <<= 1) {
    for (std::size_t symbol = 0; symbol < lengths.size(); ++symbol) {
      if (lengths[symbol] != length) continue;
      const Step step = stepOf(symbol, length);
      for (std::size_t i = reversed(code, length); i < table.size(); i += std::size_t{1} << length)
        table[i] = step;
      ++code;
    }
  }
}

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
    fill(lengths_, lengths, lengthStep);
    fill(distances_, distances, distanceStep);
  }

  bool readCode() {
    constexpr std::array<std::uint8_t, 19> kOrder = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                     11, 4,  12, 3, 13, 2, 14, 1, 15};
    const std::size_t lengthCount = in_.take(5) + 257;
    const std::size_t distanceCount = in_.take(5) + 1;
    const std::size_t given = in_.take(4) + 4;
    std::array<std::uint8_t, 19> own{};
    for (std::size_t i = 0; i < given; ++i) own[kOrder[i]] = static_cast<std::uint8_t>(in_.take(3));
    fill(lengths_, own, plainStep);
    std::array<std::uint8_t, kLengthSymbols + kDistanceSymbols> lengths{};
    const auto used = std::span(lengths).first(lengthCount + distanceCount);
    if (!readLengths(used)) return false;
    fill(lengths_, used.first(lengthCount), lengthStep);
    fill(distances_, used.subspan(lengthCount), distanceStep);
    return true;
  }

  // Both codes' lengths in one row, packed by the code that lengths_ holds at first.
  bool readLengths(std::span<std::uint8_t> lengths) {
    for (std::size_t done = 0; done < lengths.size() && in_.isInside();) {
      const Step step = lengths_[in_.peek() & (lengths_.size() - 1)];
      if (step.kind == Step::invalid) return false;
      in_.skip(step.bits);
      std::uint8_t value = step.symbol;
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
      const Step step = lengths_[bits & (lengths_.size() - 1)];
      in_.skip(step.bits);
      if (step.kind == Step::literal) continue;
      if (step.kind != Step::match) return step.kind == Step::end;
      const Step distance = distances_[bits >> step.bits & (distances_.size() - 1)];
      if (distance.kind == Step::invalid) return false;
      in_.skip(distance.bits);
    }
    return false;
  }

  BitReader in_;
  Table lengths_;
  Table distances_;
};

}  // namespace

bool openEnd(Buffer& stream, std::size_t start) {
  const std::size_t size = stream.size() - start;
  std::memset(stream.room(kSpare).data(), 0, kSpare);
  const auto end = Walk(stream.data() + start, size).toEnd();
  if (!end) return false;
  stream.data()[start + end->mark / 8] &= static_cast<unsigned char>(~(1U << end->mark % 8));
  // An empty stored block: three bits of zero, no more until the byte is full, the size and its complement.
  constexpr unsigned char kEmpty[] = {0, 0, 0, 0xff, 0xff};
  const bool fits = (end->bits + 3 + 7) / 8 <= size;
  stream.append(Bytes(kEmpty).subspan(fits ? 1 : 0));
  return true;
}

}  // namespace corvane::ditto
