#include "script/Text.h"

#include <algorithm>

namespace corvane {

std::string fill(std::string_view text, std::initializer_list<Placeholder> values) {
  std::string filled;
  filled.reserve(text.size() + 256);
  while (!text.empty()) {
    const auto open = std::min(text.find('{'), text.size());
    filled += text.substr(0, open);
    text.remove_prefix(open);
    if (text.empty()) break;
    const auto close = text.find('}');
    const auto name = close == std::string_view::npos ? std::string_view() : text.substr(1, close - 1);
    const auto* known = std::find_if(values.begin(), values.end(), [&](auto& v) { return v.first == name; });
    const bool replace = known != values.end();
    filled += replace ? known->second : text.substr(0, 1);
    text.remove_prefix(replace ? close + 1 : 1);
  }
  return filled;
}

void replaceAll(std::string& text, std::string_view what, std::string_view with) {
  for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size())) {
    text.replace(at, what.size(), with);
  }
}

}  // namespace corvane
