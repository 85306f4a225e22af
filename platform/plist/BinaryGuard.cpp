#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/plist/Guards.h"

namespace corvane {
namespace {

constexpr std::string_view kMagic = "bplist00";
constexpr std::size_t kTrailerSize = 32;
// What all values may take together after a shared one was copied to every place that refers to it.
constexpr std::uint64_t kMaxCopiedBytes = 8 << 20;

enum Kind : unsigned {
  kFlag = 0,
  kInteger,
  kReal,
  kDate,
  kData,
  kAscii,
  kUtf16,
  kUid = 8,
  kArray = 10,
  kDictionary = 13
};

struct Object {
  std::uint64_t index;
  unsigned kind;
  std::uint64_t start;       // of what follows the marker and the count
  std::uint64_t size;        // in bytes
  std::uint64_t references;  // to keys and values
};

// What a value comes to with everything in it. Not measured yet while `values` is 0.
struct Measure {
  std::uint64_t values = 0;
  std::uint64_t bytes = 0;
  std::size_t depth = 0;
};

struct Visit {
  Object object;
  std::uint64_t visited;
  Measure total;
};

class BinaryGuard {
 public:
  explicit BinaryGuard(std::string_view bytes) : bytes_(bytes) {}

  Fault fault() {
    if (!readTrailer()) return faults::kMalformed;
    measures_.resize(static_cast<std::size_t>(objects_));
    if (descend(root_)) walk();
    return fault_;
  }

 private:
  bool fail(Fault fault) {
    fault_ = fault;
    return false;
  }

  // Both are less than the file's size by now.
  [[nodiscard]] std::string_view piece(std::uint64_t at, std::uint64_t size) const {
    return bytes_.substr(static_cast<std::size_t>(at), static_cast<std::size_t>(size));
  }

  [[nodiscard]] std::uint64_t number(std::uint64_t at, std::uint64_t size) const {
    std::uint64_t value = 0;
    for (const char byte : piece(at, size)) value = value << 8 | static_cast<unsigned char>(byte);
    return value;
  }

  bool readTrailer() {
    if (bytes_.size() < kMagic.size() + kTrailerSize || !bytes_.starts_with(kMagic)) return false;
    const auto end = bytes_.size() - kTrailerSize;
    offsetSize_ = number(end + 6, 1);
    referenceSize_ = number(end + 7, 1);
    objects_ = number(end + 8, 8);
    root_ = number(end + 16, 8);
    table_ = number(end + 24, 8);
    if (offsetSize_ < 1 || offsetSize_ > 8 || referenceSize_ < 1 || referenceSize_ > 8) return false;
    if (objects_ > kMaxPropertyListValues || root_ >= objects_) return false;
    return table_ >= kMagic.size() && table_ <= end && objects_ * offsetSize_ <= end - table_;
  }

  // The marker and the count of an object, when it and all it holds lie before the table of offsets.
  [[nodiscard]] std::optional<Object> objectAt(std::uint64_t index) const {
    std::uint64_t at = number(table_ + index * offsetSize_, offsetSize_);
    if (at < kMagic.size() || at >= table_) return std::nullopt;
    const auto marker = static_cast<unsigned>(number(at++, 1));
    Object object{index, marker >> 4, at, 0, 0};
    std::uint64_t count = marker & 15;
    const bool counted = object.kind >= kData && object.kind != kUid;
    if (counted && count == 15) {
      if (at >= table_) return std::nullopt;
      const auto size = number(at, 1);
      if (size < 0x10 || size > 0x13) return std::nullopt;
      const std::uint64_t width = std::uint64_t{1} << (size - 0x10);
      count = number(at + 1, width);
      object.start = at + 1 + width;
    }
    if (count > table_ || !setSize(object, count)) return std::nullopt;
    if (object.start > table_ || object.size > table_ - object.start) return std::nullopt;
    return object;
  }

  [[nodiscard]] bool setSize(Object& object, std::uint64_t count) const {
    switch (object.kind) {
      case kFlag:
        return count == 8 || count == 9;
      case kInteger:
        object.size = std::uint64_t{1} << count;
        return count <= 4;
      case kReal:
        object.size = std::uint64_t{1} << count;
        return count == 2 || count == 3;
      case kDate:
        object.size = 8;
        return count == 3;
      case kData:
      case kAscii:
        object.size = count;
        return true;
      case kUtf16:
        object.size = 2 * count;
        return true;
      case kUid:
        object.size = count + 1;
        return count < 8;
      case kArray:
        object.references = count;
        break;
      case kDictionary:
        object.references = 2 * count;
        break;
      default:
        return false;
    }
    object.size = object.references * referenceSize_;
    return true;
  }

  // Integers beyond 64 bits would lose their upper half; a text would end at a zero byte.
  [[nodiscard]] bool isReadable(const Object& object) const {
    const auto content = piece(object.start, object.size);
    if (object.kind == kInteger && object.size == 16) return number(object.start, 8) == 0;
    if (object.kind == kAscii) return content.find('\0') == std::string_view::npos;
    if (object.kind != kUtf16) return true;
    for (std::size_t at = 0; at < content.size(); at += 2)
      if (content[at] == 0 && content[at + 1] == 0) return false;
    return true;
  }

  bool descend(std::uint64_t index) {
    const auto object = objectAt(index);
    if (!object || !isReadable(*object)) return fail(faults::kMalformed);
    const bool container = object->kind == kArray || object->kind == kDictionary;
    if (container && path_.size() >= kMaxPropertyListDepth) return fail(faults::kDepth);
    path_.push_back({*object, 0, {1, object->size, container ? std::size_t{1} : 0}});
    return true;
  }

  void walk() {
    while (!path_.empty()) {
      Visit& visit = path_.back();
      if (visit.visited == visit.object.references) {
        const Measure total = visit.total;
        measures_[static_cast<std::size_t>(visit.object.index)] = total;
        path_.pop_back();
        if (!path_.empty() && !add(total)) return;
      } else if (!follow(number(visit.object.start + visit.visited++ * referenceSize_, referenceSize_))) {
        return;
      }
    }
  }

  bool follow(std::uint64_t index) {
    if (index >= objects_) return fail(faults::kMalformed);
    const Measure& known = measures_[static_cast<std::size_t>(index)];
    if (known.values > 0) return add(known);
    for (const Visit& visit : path_)
      if (visit.object.index == index) return fail(faults::kCycle);
    return descend(index);
  }

  bool add(const Measure& part) {
    Measure& total = path_.back().total;
    total.values += part.values;
    total.bytes += part.bytes;
    total.depth = std::max(total.depth, part.depth + 1);
    if (path_.size() + part.depth > kMaxPropertyListDepth) return fail(faults::kDepth);
    if (total.values > kMaxPropertyListValues || total.bytes > kMaxCopiedBytes) return fail(faults::kSize);
    return true;
  }

  std::string_view bytes_;
  Fault fault_;
  std::uint64_t offsetSize_ = 0;
  std::uint64_t referenceSize_ = 0;
  std::uint64_t objects_ = 0;
  std::uint64_t root_ = 0;
  std::uint64_t table_ = 0;
  std::vector<Measure> measures_;  // one for each object
  std::vector<Visit> path_;        // from the root to the value that is looked at
};

}  // namespace

Fault faultInBinary(std::string_view bytes) { return BinaryGuard(bytes).fault(); }

}  // namespace corvane
