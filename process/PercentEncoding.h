// Texts as parts of a URL. Pure; any thread.
#pragma once

#include <string>
#include <string_view>

namespace corvane {

/// `text` with every byte as "%" and two hexadecimal digits that is neither in `more` nor an ASCII letter, a
/// digit or one of "-_.!~*'()", which stand for themselves anywhere in a URL.
[[nodiscard]] std::string percentEncoded(std::string_view text, std::string_view more);

}  // namespace corvane
