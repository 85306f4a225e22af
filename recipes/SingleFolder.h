// The sections of the clients that keep everything in one folder of the user's.
// All follow the `Recipe` contract; thread: main.
#pragma once

#include <string>

#include "script/Client.h"

namespace corvane {

[[nodiscard]] std::string shellScriptForThunderbird(const RecipeContext& context, std::string script,
                                                    const std::string& destination);

/// Built on Thunderbird, with whose folder it shares its name and its data.
[[nodiscard]] std::string shellScriptForEudora8(const RecipeContext& context, std::string script,
                                                const std::string& destination);

[[nodiscard]] std::string shellScriptForPostbox(const RecipeContext& context, std::string script,
                                                const std::string& destination);

[[nodiscard]] std::string shellScriptForEudora(const RecipeContext& context, std::string script,
                                               const std::string& destination);

}  // namespace corvane
