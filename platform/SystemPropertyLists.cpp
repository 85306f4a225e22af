#include "platform/SystemPropertyLists.h"

#include <utility>

#include "platform/plist/Codec.h"
#include "platform/plist/Guards.h"
#include "platform/plist/Texts.h"
#include "process/Files.h"

namespace corvane {
namespace {

// The settings take a few kilobytes; the Dock's preferences, the largest file that is read, a tenth of this.
constexpr std::size_t kLargestFile = 1 << 20;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

struct Format {
  Fault (&faultIn)(std::string_view);
  std::optional<PropertyListValue> (&decode)(std::string_view);
};

Format formatOf(std::string_view bytes) {
  if (bytes.starts_with("bplist")) return {faultInBinary, decodeBinary};
  if (trimmed(bytes).starts_with('<')) return {faultInXml, decodeXml};
  return {faultInOpenStep, decodeOpenStep};
}

std::optional<PropertyListDictionary> dictionaryIn(std::string_view bytes, Fault& fault) {
  if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
  const Format format = formatOf(bytes);
  fault = bytes.empty() ? "is empty" : format.faultIn(bytes);
  if (!fault.empty()) return std::nullopt;
  auto root = format.decode(bytes);
  fault = root ? "holds no dictionary" : faults::kMalformed;
  auto* dictionary = root ? std::get_if<PropertyListDictionary>(&root->value) : nullptr;
  return dictionary ? std::optional(std::move(*dictionary)) : std::nullopt;
}

}  // namespace

std::optional<PropertyListDictionary> SystemPropertyLists::readDictionary(const std::string& path,
                                                                          std::string& problem) {
  const auto bytes = readFile(path, kLargestFile, problem);
  if (!bytes) return std::nullopt;
  Fault fault;
  auto dictionary = dictionaryIn(*bytes, fault);
  if (!dictionary) problem = "cannot read the property list " + path + ": it " + std::string(fault);
  return dictionary;
}

bool SystemPropertyLists::writeXml(const std::string& path, const PropertyListDictionary& dictionary,
                                   std::string& problem) {
  const auto xml = encodeXml(dictionary);
  if (xml) return writeFileAtomically(path, *xml, problem);
  problem = "cannot write " + path + ": it would hold a value that has no form in XML";
  return false;
}

}  // namespace corvane
