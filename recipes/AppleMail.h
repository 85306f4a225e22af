// The sections of Apple Mail, alone or with the address book.
// Both follow the `Recipe` contract; thread: main.
#pragma once

#include <string>

#include "script/Client.h"

namespace corvane {

/// Apple Mail alone. On older systems its attachments and preferences are archived too.
[[nodiscard]] std::string shellScriptForMail(const RecipeContext& context, std::string script,
                                             const std::string& destination);

}  // namespace corvane
