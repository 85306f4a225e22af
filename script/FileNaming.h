// How an archive gets its name. Names, user and client are filled in while the script is assembled; the date
// becomes a shell command, so that it is the date on which the script runs the line.
// Pure functions on UTF-8; any thread; none fails.
#pragma once

#include <string>
#include <string_view>

#include "script/Facts.h"

namespace corvane {

inline constexpr std::string_view kDefaultFilenameTemplate =
    "(Machine Name)-(Username)-(Email Client)-Date.qvb";
inline constexpr std::string_view kDefaultDateFormat = "DD/MM/YYYY";

/// The `date` command, in backquotes, for one of the eight format names of the preferences; an unknown name
/// counts as "DD/MM/YYYY".
[[nodiscard]] std::string getDateAndTimeString(std::string_view dateFormat);
[[nodiscard]] std::string getDateString(std::string_view dateFormat);

/// The template with every token but the client's filled in. Tokens are replaced one after the other, so a
/// token inside a machine or user name is replaced too.
[[nodiscard]] std::string composeFilename(std::string filenameTemplate, std::string_view dateFormat,
                                          const Facts& facts);

/// Fills in the client's word.
void nameClient(std::string& filename, std::string_view word);

}  // namespace corvane
