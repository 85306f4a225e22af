// Small operations on script text. Pure functions; any thread.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace corvane {

using Placeholder = std::pair<std::string_view, std::string_view>;  ///< name, value

/// `text` with every `{name}` of `values` replaced by its value, in one pass: braces inside a value stay as
/// they are, and so do braces around anything that is no known name.
[[nodiscard]] std::string fill(std::string_view text, std::initializer_list<Placeholder> values);

/// Replaces every occurrence of `what` in `text`, left to right, without looking at what was put in.
void replaceAll(std::string& text, std::string_view what, std::string_view with);

/// No text contains the empty one.
[[nodiscard]] inline bool contains(std::string_view text, std::string_view what) {
  return !what.empty() && text.find(what) != std::string_view::npos;
}

}  // namespace corvane
