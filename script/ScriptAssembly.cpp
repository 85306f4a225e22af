#include "script/ScriptAssembly.h"

#include <algorithm>
#include <string_view>

#include "script/ClientSnippets.h"
#include "script/FileNaming.h"
#include "script/Rotation.h"
#include "script/Text.h"

namespace corvane {
namespace {

constexpr std::string_view kHeader = R"(#!/bin/sh
echo "Results of the Corvane:"
errorCode=0

)";

constexpr std::string_view kBeforeAppleMail = R"(	echo "Creating backup files"
	sleep 1
)";

// The copy's status is not looked at: the verdict is about the archive, not about the server.
constexpr std::string_view kServerCopy = R"(	echo "Moving Backup file to server volume"
	cp -f "/tmp/{name}" "{destination}/{name}"

	rm "/tmp/{name}"


)";

constexpr std::string_view kVerdict = R"(	if [ $errorCode -eq 0 ]
		then
		touch "{support}/lastbackup"
		echo "`date`: Backup completed successfully."
	elif [ $errorCode -eq 1 ]
		then
		echo "`date`: Backup failed. Please see above error messages."
	else
		echo "`date`: Backup completed with errors. Please see log for error messages."
	fi)";

constexpr std::string_view kShutdown = R"(
echo "Shutting Down Mac"
osascript -e 'tell application "Finder" to shut down')";

}  // namespace

void ScriptAssembly::assemble(const ScriptOptions& options) {
  options_ = options;
  rotationTag_.clear();
  record_.currentFilename.clear();
  record_.manifests.clear();
  record_.copiedArchives.clear();
  record_.shellScript = kHeader;
  record_.language = options.language;
  for (const auto& displayName : options_.clients) addClient(displayName);
  addTrailer();
}

void ScriptAssembly::addClient(const std::string& displayName) {
  auto& script = record_.shellScript;
  const Client* client = findClient(clients_, displayName, options_.backupAddressBook);
  record_.currentFilename = composeFilename(record_.filenameTemplate, record_.dateFormat, facts_);
  const QuitChoice choice{record_.quitEntourage, facts_.minorSystemVersion};
  script = addAppleScriptTo(script, client, true, options_.backupAddressBook, choice);
  if (client) addSection(*client);
  if (record_.useAutomount) record_.progressMaximum += 3;
  if (relaunches() && !(client && client->isAppleMail)) {
    script = addAppleScriptTo(script, client, false, options_.backupAddressBook, choice);
  }
  script += "\n";
  addServerCopy();
  addRotation();
  script += "\n\n";
}

void ScriptAssembly::addSection(const Client& client) {
  auto& script = record_.shellScript;
  if (client.isAppleMail) {
    host_.measureMailFolder();
    script += kBeforeAppleMail;
  }
  record_.progressMaximum = client.progressMaximum;
  if (client.identityFolders) chooseIdentityFolder(client);
  const RecipeContext context{record_, facts_, host_, client, client.isAppleMail && relaunches()};
  script = client.recipe(context, script, options_.destination);
  rotationTag_ = client.rotationTag;
}

void ScriptAssembly::chooseIdentityFolder(const Client& client) {
  const auto& folders = *client.identityFolders;
  if (record_.language < 0 || record_.language >= static_cast<std::int32_t>(folders.size())) return;
  const auto& chosen = folders[static_cast<std::size_t>(record_.language)];
  record_.microsoftSourceFolder = facts_.documentsFolder + "/" + std::string(chosen.folder);
  nameClient(record_.currentFilename, chosen.fileNameWord);
}

void ScriptAssembly::addServerCopy() {
  if (!record_.useAutomount) return;
  record_.copiedArchives.push_back(record_.finalFileName);
  record_.shellScript +=
      fill(kServerCopy, {{"name", record_.finalFileName}, {"destination", options_.destination}});
}

void ScriptAssembly::addRotation() {
  // Before the first known client there is no archive whose siblings could be meant.
  if (!options_.numberOfBackups || rotationTag_.empty()) return;
  const int limit = std::max(*options_.numberOfBackups, 1);
  record_.shellScript =
      addLimitedBackups(limit, rotationTag_, record_.shellScript, options_.destination, record_);
}

void ScriptAssembly::addTrailer() {
  record_.shellScript += fill(kVerdict, {{"support", supportFolder(facts_)}});
  record_.progressMaximum += 1;
  if (options_.shutdownOnCompletion) record_.shellScript += kShutdown;
}

}  // namespace corvane
