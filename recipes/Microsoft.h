// The sections of the Microsoft clients. Where their data lies and what their archive is called depends on
// the language of Office; both stand in the record before the section is built. Both follow the `Recipe`
// contract; thread: main.
#pragma once

#include <string>

#include "script/Client.h"

namespace corvane {

/// All versions of Entourage.
[[nodiscard]] std::string shellScriptForEntourage(const RecipeContext& context, std::string script,
                                                  const std::string& destination);

[[nodiscard]] std::string shellScriptForOutlook(const RecipeContext& context, std::string script,
                                                const std::string& destination);

/// Folders and words by language: English, Italian, German, French, Dutch, Spanish. Dutch Office has English
/// folder names.
extern const IdentityFolders kOutlook2011Folders;
extern const IdentityFolders kEntourage2008Folders;
extern const IdentityFolders kEntourage2004Folders;
extern const IdentityFolders kEntourageXFolders;

}  // namespace corvane
