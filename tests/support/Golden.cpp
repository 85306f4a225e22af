#include "tests/support/Golden.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace corvane {
namespace {

// The line of `text` that holds the byte at `offset`, with its line end.
std::string lineAt(std::string_view text, std::size_t offset) {
  if (offset >= text.size() && (text.empty() || text.back() == '\n')) return "(end of text)";
  const auto before = text.substr(0, offset).rfind('\n');
  const auto start = before == std::string_view::npos ? 0 : before + 1;
  std::string escaped;
  for (const char c : text.substr(start, text.find('\n', offset) - start)) {
    if (c == '\t') {
      escaped += "\\t";
    } else {
      escaped += c;
    }
  }
  return escaped + (text.find('\n', offset) == std::string_view::npos ? "(end of text)" : "\\n");
}

}  // namespace

std::string readGolden(std::string_view name,
                       std::initializer_list<std::pair<std::string_view, std::string_view>> values) {
  const std::string path = std::string(GOLDEN_FOLDER "/") + std::string(name) + ".txt";
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path);
  std::ostringstream bytes;
  bytes << file.rdbuf();
  std::string text = bytes.str();
  for (const auto& [what, with] : values) {
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size())) {
      text.replace(at, what.size(), with);
    }
  }
  return text;
}

testing::AssertionResult sameText(std::string_view expected, std::string_view actual) {
  if (expected == actual) return testing::AssertionSuccess();
  const auto common = std::mismatch(expected.begin(), expected.end(), actual.begin(), actual.end()).first;
  const auto offset = static_cast<std::size_t>(common - expected.begin());
  return testing::AssertionFailure() << "first difference in line "
                                     << std::count(expected.begin(), common, '\n') + 1
                                     << "\n  expected: " << lineAt(expected, offset)
                                     << "\n  actual:   " << lineAt(actual, offset);
}

}  // namespace corvane
