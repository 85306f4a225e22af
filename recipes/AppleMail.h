// The sections of Apple Mail, alone or with the address book.
// Both follow the `Recipe` contract; thread: main.
#pragma once

#include <string>

#include "script/Client.h"

namespace corvane {

/// Apple Mail alone. On older systems its attachments and preferences are archived too.
[[nodiscard]] std::string shellScriptForMail(const RecipeContext& context, std::string script,
                                             const std::string& destination);

/// The same with the address book. Here attachments and preferences end one system version earlier.
[[nodiscard]] std::string shellScriptForMailAndAddressBook(const RecipeContext& context, std::string script,
                                                           const std::string& destination);

}  // namespace corvane
