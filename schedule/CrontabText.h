// What is taken out of the text of a crontab and put into it. Pure functions; positions count UTF-16 units.
// Thread: any.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace corvane {

/// True when `text` is no crontab, but what the tool says when there is none.
[[nodiscard]] bool saysThereIsNone(std::u16string_view text);

/// How many lines hold `scriptName` behind at least one other character.
[[nodiscard]] std::size_t jobCount(const std::u16string& listing, std::u16string_view scriptName);

/// `listing`, as the tool printed it, without those lines. Blank lines before such a line go with it, and so
/// does the line break that ends the line before; its own stays.
///
/// One such line is expected. With several, the ranges of the later ones are still counted in `listing`
/// though earlier lines are gone by then, so that they take away what follows their line; what of a range
/// lies beyond the end of the text is nothing.
[[nodiscard]] std::u16string withoutJobs(const std::u16string& listing, std::u16string_view scriptName);

/// `job`, which brings its own line break, before `crontab`, without any empty line.
[[nodiscard]] std::u16string withJobInFront(std::u16string_view job, std::u16string_view crontab);

/// No text contains the empty one.
[[nodiscard]] bool contains(std::u16string_view text, std::u16string_view what);

}  // namespace corvane
