// Texts as UTF-16, in which positions in a crontab are counted, and their way from and to bytes.
// Pure functions but for the one that looks at the user's locale; any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// Nothing when `bytes` are no UTF-8.
[[nodiscard]] std::optional<std::u16string> utf16FromUtf8(std::string_view bytes);

/// Nothing when `text` holds half a surrogate pair, which is no character.
[[nodiscard]] std::optional<std::string> utf8FromUtf16(std::u16string_view text);

/// The text in the encoding of the user's locale. Nothing when that lacks one of its characters.
[[nodiscard]] std::optional<std::string> localeBytesFromUtf16(std::u16string_view text);

/// Every byte as one unit of the same value, and back: a way for bytes in an unknown encoding. Units above
/// 255 have no way back.
[[nodiscard]] std::u16string widened(std::string_view bytes);
[[nodiscard]] std::string narrowed(std::u16string_view units);

}  // namespace corvane
