#include "recipes/ClientTable.h"

#include "recipes/AppleMail.h"

namespace corvane {
namespace {

// The controller launches Mail itself when it reads this line.
constexpr std::string_view kLaunchMail = "\techo \"----Launch Apple Mail----\"\n\n";

constexpr Client kClients[] = {
    {.displayName = "Apple Mail",
     .rotationTag = "Mail",
     .progressMaximum = 7,
     .recipe = shellScriptForMail,
     .quitForm = QuitForm::mail,
     .processPattern = "Mail.app/",
     .application = "Mail",
     .relaunch = kLaunchMail,
     .isAppleMail = true},
};

}  // namespace

ClientTable clientTable() { return kClients; }

}  // namespace corvane
