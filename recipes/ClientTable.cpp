#include "recipes/ClientTable.h"

#include "recipes/AppleMail.h"
#include "recipes/MailAndPreferences.h"
#include "recipes/Microsoft.h"
#include "recipes/SingleFolder.h"

namespace corvane {
namespace {

// The controller launches Mail itself when it reads this line.
constexpr std::string_view kLaunchMail = "\techo \"----Launch Apple Mail----\"\n\n";

constexpr std::string_view kActivate =
    "\tosascript -e 'tell application \"{application}\"' -e \"activate\" -e 'end tell'\n\n";

constexpr Client appleMail(bool withAddressBook) {
  return {.displayName = "Apple Mail",
          .rotationTag = withAddressBook ? "Mail+AB" : "Mail",
          .progressMaximum = withAddressBook ? 9 : 7,
          .recipe = withAddressBook ? shellScriptForMailAndAddressBook : shellScriptForMail,
          .quitForm = QuitForm::mail,
          .processPattern = "Mail.app/",
          .application = "Mail",
          .relaunch = kLaunchMail,
          .isAppleMail = true,
          .withAddressBook = withAddressBook};
}

constexpr Client entourage(std::string_view displayName, std::string_view tag,
                           const IdentityFolders& folders) {
  return {.displayName = displayName,
          .rotationTag = tag,
          .progressMaximum = 3,
          .recipe = shellScriptForEntourage,
          .quitForm = QuitForm::microsoft,
          .processPattern = "Microsoft Entourage",
          .application = "Microsoft Entourage",
          .relaunch = kActivate,
          .canGoOffline = true,
          .identityFolders = &folders};
}

// A client whose one name is all it has.
constexpr Client namesake(std::string_view name, int progressMaximum, Recipe recipe) {
  return {.displayName = name,
          .rotationTag = name,
          .progressMaximum = progressMaximum,
          .recipe = recipe,
          .processPattern = name,
          .application = name,
          .relaunch = kActivate};
}

constexpr Client kClients[] = {
    appleMail(true),
    appleMail(false),
    {.displayName = "Microsoft Outlook 2011",
     .rotationTag = "Outlook2011",
     .progressMaximum = 3,
     .recipe = shellScriptForOutlook,
     .quitForm = QuitForm::microsoft,
     .quitEcho = "Quiting Outlook...",
     .processPattern = "Microsoft Outlook",
     .application = "Microsoft Outlook",
     .relaunch = kActivate,
     .identityFolders = &kOutlook2011Folders},
    entourage("Microsoft Entourage 2008", "Entourage2008", kEntourage2008Folders),
    entourage("Microsoft Entourage 2004", "Entourage2004", kEntourage2004Folders),
    entourage("Microsoft Entourage v.X", "EntouragevX", kEntourageXFolders),
    namesake("Thunderbird", 3, shellScriptForThunderbird),
    namesake("Postbox", 3, shellScriptForPostbox),
    namesake("Eudora", 3, shellScriptForEudora),
    // It is quit as Eudora, and not started again.
    {.displayName = "Eudora 8",
     .rotationTag = "Eudora 8",
     .progressMaximum = 3,
     .recipe = shellScriptForEudora8,
     .processPattern = "Eudora",
     .application = "Eudora"},
    namesake("GyazMail", 4, shellScriptForGyazMail),
    namesake("Mailsmith", 4, shellScriptForMailsmith),
};

}  // namespace

ClientTable clientTable() { return kClients; }

}  // namespace corvane
