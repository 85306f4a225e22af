#include "recipes/Microsoft.h"

#include <string_view>
#include <utility>

#include "recipes/Staging.h"

namespace corvane {
namespace {

std::string addSection(const RecipeContext& context, std::string script, const std::string& destination,
                       std::string_view announcement) {
  auto& record = context.record;
  record.finalFileName = record.currentFilename;
  script += archiveFolder(context, destination, record.microsoftSourceFolder, announcement);
  return script;
}

}  // namespace

// The accented letters are single, precomposed characters, as the installers made the folders.

const IdentityFolders kOutlook2011Folders = {{
    {"Microsoft User Data/Office 2011 Identities", "Outlook2011"},
    {"Dati Utente Microsoft/Office 2011 Identities", "Outlook2011-it"},
    {"Microsoft-Benutzerdaten/Office 2011 Identities", "Outlook2011-de"},
    {"Données utilisateurs Microsoft/Office 2011 Identities", "Outlook2011-fr"},
    {"Microsoft User Data/Office 2011 Identities", "Outlook2011-du"},
    {"Datos de usuario de Microsoft/Office 2011 Identities", "Outlook2011-es"},
}};

const IdentityFolders kEntourage2008Folders = {{
    {"Microsoft User Data/Office 2008 Identities", "Entourage2008"},
    {"Dati Utente Microsoft/Identità di Office 2008", "Entourage2008-it"},
    {"Microsoft-Benutzerdaten/Office 2008-Identitäten", "Entourage2008-de"},
    {"Données utilisateurs Microsoft/Identités Office 2008", "Entourage2008-fr"},
    {"Microsoft User Data/Office 2008 Identities", "Entourage2008-du"},
    {"Datos de usuario de Microsoft/Identidades de Office 2008", "Entourage2008-es"},
}};

const IdentityFolders kEntourage2004Folders = {{
    {"Microsoft User Data/Office 2004 Identities", "Entourage2004"},
    {"Dati Utente Microsoft/Identità di Office 2004", "Entourage2004-it"},
    {"Microsoft-Benutzerdaten/Office 2004-Identitäten", "Entourage2004-de"},
    {"Données utilisateurs Microsoft/Utilisateurs Office 2004", "Entourage2004-fr"},
    {"Microsoft User Data/Office 2004 Identities", "Entourage2004-du"},
    {"Datos de usuario de Microsoft/Identidades de Office 2004", "Entourage2004-es"},
}};

const IdentityFolders kEntourageXFolders = {{
    {"Microsoft User Data/Office X Identities", "EntouragevX"},
    {"Dati Utente Microsoft/Identità di Office X", "EntouragevX-it"},
    {"Microsoft-Benutzerdaten/Office X-Identitäten", "EntouragevX-de"},
    {"Données utilisateurs Microsoft/Utilisateurs Office X", "EntouragevX-fr"},
    {"Microsoft User Data/Office X Identities", "EntouragevX-du"},
    {"Datos de usuario de Microsoft/Identidades de Office X", "EntouragevX-es"},
}};

std::string shellScriptForEntourage(const RecipeContext& context, std::string script,
                                    const std::string& destination) {
  constexpr std::string_view kAnnouncement = R"(	echo "Backing up Entourage Database...")";
  return addSection(context, std::move(script), destination, kAnnouncement);
}

std::string shellScriptForOutlook(const RecipeContext& context, std::string script,
                                  const std::string& destination) {
  constexpr std::string_view kAnnouncement = R"(	echo "Backing up Outlook Database...")";
  return addSection(context, std::move(script), destination, kAnnouncement);
}

}  // namespace corvane
