// What the window shows of a status. Pure functions on UTF-8; any thread.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace corvane {

/// The last line of `status` that holds more than blanks, without surrounding blanks; empty when none does.
/// A line without end must not hold the window up: of more than 1000 characters the two ends remain, joined
/// by an ellipsis.
[[nodiscard]] std::string statusLine(std::string_view status);

/// All of `status` without surrounding blanks, cut in the same way: what the user may ask for.
[[nodiscard]] std::string wholeStatus(std::string_view status);

/// `line`, or its two ends joined by an ellipsis, as long as `fits` accepts. `fits` must accept every text
/// shorter than one that it accepts.
[[nodiscard]] std::string shortenToFit(const std::string& line,
                                       const std::function<bool(const std::string&)>& fits);

}  // namespace corvane
