#include "script/ClientSnippets.h"

#include <string_view>

#include "script/Text.h"

namespace corvane {
namespace {

// The loops have no time limit on purpose: a client that asks its user something is waited for.

constexpr std::string_view kCommonForm = R"(	echo "{echo}"
	mailBase=$(/bin/ps -wwx | grep "{pattern}" | grep -v grep | wc -l)

	if [ $mailBase -ne 0 ]
		then
		osascript -e 'tell application "{application}"' -e "quit" -e 'end tell'
		echo "Waiting for {application} to quit"
		mailResult=$mailBase
		while [ $mailResult -eq $mailBase ]
		do
			mailResult=$(/bin/ps -wwx | grep "{pattern}" | grep -v grep | wc -l)
			sleep 1
		done
	fi

)";

constexpr std::string_view kMailForm = R"(	echo "{echo}"
	mailBase=$(/bin/ps -wwx | grep "{pattern}" | grep -v grep | wc -l)

	if [ $mailBase -ne 0 ]
		then
		mailResult=$mailBase
		osascript -e 'tell application "{application}"' -e "quit" -e 'end tell'
		echo "Waiting for {application} to quit"
		while [ $mailResult -eq $mailBase ]
		do
			mailResult=$(/bin/ps -wwx | grep "{pattern}" | grep -v grep | wc -l)
			sleep 1
		done
	fi

)";

constexpr std::string_view kMicrosoftForm =
    R"(	mailBase=$(/bin/ps -wwx | grep "{pattern}" | grep -v grep | wc -l)

	osascript -e 'tell application "{application}"' -e "quit" -e 'end tell'
	if [ $mailBase -ne 0 ]
		then
		echo "Waiting for {application} to quit"
		mailResult=$mailBase
		while [ $mailResult -eq $mailBase ]
		do
			mailResult=$(/bin/ps -wwx | grep "{pattern}" | grep -v grep | wc -l)
			sleep 1
		done
	fi

)";

constexpr std::string_view kOfflineForm = R"(	echo "Setting Microsoft Entourage Offline..."
	osascript -e 'tell application "Microsoft Entourage"' -e 'set working offline to true' -e 'end tell'

)";

constexpr std::string_view kOnlineForm = R"(

	echo "Setting Microsoft Entourage Online..."
	osascript -e 'tell application "Microsoft Entourage"' -e 'set working offline to false' -e 'end tell')";

std::string quitApplication(std::string_view form, std::string_view echo, std::string_view pattern,
                            std::string_view application) {
  return fill(form, {{"echo", echo}, {"pattern", pattern}, {"application", application}});
}

std::string quitClient(const Client& client, bool quitEntourage) {
  if (client.canGoOffline && !quitEntourage) return std::string(kOfflineForm);
  switch (client.quitForm) {
    case QuitForm::common:
      return quitApplication(kCommonForm, client.quitEcho, client.processPattern, client.application);
    case QuitForm::mail:
      return quitApplication(kMailForm, client.quitEcho, client.processPattern, client.application);
    case QuitForm::microsoft: {
      constexpr std::string_view daemon = "Microsoft Database Daemon";
      return fill("\techo \"{echo}\"\n", {{"echo", client.quitEcho}}) +
             quitApplication(kMicrosoftForm, "", client.processPattern, client.application) +
             quitApplication(kMicrosoftForm, "", daemon, daemon);
    }
  }
  return {};
}

// The system renamed the application in its minor version 8.
std::string quitAddressBook(int minorSystemVersion) {
  const std::string_view name = minorSystemVersion > 7 ? "Contacts" : "Address Book";
  return quitApplication(kCommonForm, fill("Quiting {name} application...", {{"name", name}}), name, name);
}

std::string relaunchClient(const Client* client, bool quitEntourage) {
  if (client && client->canGoOffline && !quitEntourage) return std::string(kOnlineForm);
  std::string text = "\n\techo \"Launching email application...\"\n";
  if (client) text += fill(client->relaunch, {{"application", client->application}});
  return text;
}

}  // namespace

std::string addAppleScriptTo(std::string script, const Client* client, bool isHeader, bool withAddressBook,
                             const QuitChoice& choice) {
  if (!isHeader) return script + relaunchClient(client, choice.quitEntourage);
  if (client) script += quitClient(*client, choice.quitEntourage);
  if (withAddressBook) script += quitAddressBook(choice.minorSystemVersion);
  return script;
}

}  // namespace corvane
