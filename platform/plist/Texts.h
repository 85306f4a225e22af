// Questions about pieces of text in a property list, answered alike in every locale. Pure; any thread.
#pragma once

#include <string_view>

namespace corvane {

/// UTF-8 without the control characters that XML has no way to write.
[[nodiscard]] bool hasFormInXml(std::string_view text);

/// A whole decimal number, or a hexadecimal one after "0x", of at most 64 bits, with or without a sign.
/// Without leading zeros: some readers take them for octal.
[[nodiscard]] bool isInteger(std::string_view text);

/// A finite decimal number, such as "-1", "1.5" or "1e-3".
[[nodiscard]] bool isReal(std::string_view text);

[[nodiscard]] bool isSpace(char character);
[[nodiscard]] std::string_view trimmed(std::string_view text);

}  // namespace corvane
