#include "recipes/AppleMail.h"

#include <cmath>
#include <string_view>

#include "recipes/Staging.h"
#include "script/Text.h"

namespace corvane {
namespace {

// The AppKit of macOS 10.7, the last system on which Mail kept attachments and preferences apart.
constexpr double kLastAppKitWithAttachments = 1138;

constexpr std::string_view kHead = R"(	mkdir "{base}/.QVB_Backup"
	ditto "{contents}" "{base}/.QVB_Backup/Contents.plist"
	mkdir "{base}/.QVB_Backup/Mail"
	echo "Backing up Mail..."
	sleep 1
	ditto -ckX "{library}/Mail" "{base}/.QVB_Backup/Mail/Mail.zip"
	if [ "$?" -eq 0 ]
		then)";

constexpr std::string_view kMailOnly = R"({relaunch}
		echo "Compressing Backup files"
		ditto -ck "{base}/.QVB_Backup" "{base}/corvane.qvb"
		if [ "$?" -eq 0 ]
			then
			mv "{base}/corvane.qvb" "{base}/{name}"
			if [ ! "$?" -eq 0 ]
				then
				errorCode=1
			fi
		else
			errorCode=1
		fi
	else
		errorCode=1
	fi
)";

constexpr std::string_view kWithAttachments = R"(
		echo "Backing up Mail Attachments..."
		ditto -ckX "{library}/Mail Downloads" "{base}/.QVB_Backup/Mail/MailDownloads.zip"
		if [ "$?" -eq 0 ]
			then
			ditto "{library}/Preferences/com.apple.mail.plist" "{base}/.QVB_Backup/Mail/com.apple.mail.plist"
			if [ "$?" -eq 0 ]
				then
				{relaunch}echo "Compressing Backup files"
				ditto -ck "{base}/.QVB_Backup" "{base}/corvane.qvb"
				if [ "$?" -eq 0 ]
					then
					mv "{base}/corvane.qvb" "{base}/{name}"
					if [ ! "$?" -eq 0 ]
						then
						errorCode=1
					fi
				else
					errorCode=1
				fi
			else
				errorCode=1
			fi
		else
			errorCode=1
		fi
	else
		errorCode=1
	fi
)";

constexpr std::string_view kWithPreferences = R"(
		ditto "{library}/Preferences/com.apple.mail.plist" "{base}/.QVB_Backup/Mail/com.apple.mail.plist"
		if [ "$?" -eq 0 ]
			then
			{relaunch}echo "Compressing Backup files"
			ditto -ck "{base}/.QVB_Backup" "{base}/corvane.qvb"
			if [ "$?" -eq 0 ]
				then
				mv "{base}/corvane.qvb" "{base}/{name}"
				if [ ! "$?" -eq 0 ]
					then
					errorCode=1
				fi
			else
				errorCode=1
			fi
		else
			errorCode=1
		fi
	else
		errorCode=1
	fi
)";

constexpr std::string_view kFoot = R"(
	rm -r -f "{base}/.QVB_Backup")";

constexpr std::string_view kRelaunch = R"(
		echo "Launching email application..."
		echo "----Launch Apple Mail----"

)";

// The older branches leave the tabs before the relaunch text behind as a line of their own.
std::string_view bodyFor(const RecipeContext& context) {
  const auto& facts = context.facts;
  if (std::floor(facts.appKitVersion) > kLastAppKitWithAttachments) return kMailOnly;
  const bool attachments = context.host.folderHasEntries(facts.libraryFolder + "/Mail Downloads");
  return attachments ? kWithAttachments : kWithPreferences;
}

}  // namespace

std::string shellScriptForMail(const RecipeContext& context, std::string script,
                               const std::string& destination) {
  auto& record = context.record;
  const std::string base = baseFolder(record, destination);
  requestManifest(context, supportFolder(context.facts), "Apple Mail");
  noteStagingFolder(record, base);
  record.mailTempFolder = record.emailTempDirectoryPath + "/Mail/";
  record.mailSizeTempFolder =
      record.useAutomount ? record.emailTempDirectoryPath : record.emailTempDirectoryPath + "/Mail";
  finishFileName(record, "Mail");
  for (const auto piece : {kHead, bodyFor(context), kFoot}) {
    script += fill(piece, {{"base", base},
                           {"contents", record.contentsLocation},
                           {"library", context.facts.libraryFolder},
                           {"name", record.finalFileName},
                           {"relaunch", context.relaunch ? kRelaunch : ""}});
  }
  return script;
}

}  // namespace corvane
