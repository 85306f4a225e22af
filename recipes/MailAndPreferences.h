// The sections of the clients that keep mail and preferences in two places: both are staged, then compressed.
// No step of theirs is tested, so these sections never fail a run by themselves.
// Both follow the `Recipe` contract; thread: main.
#pragma once

#include <string>

#include "script/Client.h"

namespace corvane {

/// The path of the mail folder reaches `ditto` with a backslash in it.
[[nodiscard]] std::string shellScriptForGyazMail(const RecipeContext& context, std::string script,
                                                 const std::string& destination);

/// Leaves a double quote open: the shell takes what follows in the script the other way round.
[[nodiscard]] std::string shellScriptForMailsmith(const RecipeContext& context, std::string script,
                                                  const std::string& destination);

}  // namespace corvane
