#include "recipes/AppleMail.h"

#include <cmath>
#include <span>
#include <string_view>
#include <utility>

#include "recipes/Staging.h"
#include "script/Text.h"

namespace corvane {
namespace {

constexpr std::string_view kHead = R"(	mkdir "{base}/.QVB_Backup"
	ditto "{contents}" "{base}/.QVB_Backup/Contents.plist"
	mkdir "{base}/.QVB_Backup/Mail"
{moreHead}	echo "Backing up Mail..."
	sleep 1)";

constexpr std::string_view kAddressBookHead = R"(	mkdir "{base}/.QVB_Backup/AB"

)";

constexpr std::string_view kFoot = R"(

	rm -r -f "{base}/.QVB_Backup")";

// The steps, each as deep as it would stand as the first.

constexpr std::string_view kMail = R"(
	ditto -ckX "{library}/Mail" "{base}/.QVB_Backup/Mail/Mail.zip")";

constexpr std::string_view kAttachments = R"(
	echo "Backing up Mail Attachments..."
	ditto -ckX "{library}/Mail Downloads" "{base}/.QVB_Backup/Mail/MailDownloads.zip")";

constexpr std::string_view kPreferences = R"(
	ditto "{library}/Preferences/com.apple.mail.plist" "{base}/.QVB_Backup/Mail/com.apple.mail.plist")";

constexpr std::string_view kAddressBook = R"(
	echo "Backing up Address Book..."
	ditto -ckX "{support}/AddressBook" "{base}/.QVB_Backup/AB/AddressBook.zip")";

constexpr std::string_view kStepDone = R"(
	if [ "$?" -eq 0 ]
		then)";

constexpr std::string_view kRelaunch = R"(
		echo "Launching email application..."
		echo "----Launch Apple Mail----"

)";

/// What a section archives: steps of which each is nested into the success of the one before, and inside the
/// last one the compression. Its text stands here with its own tabs, which do not always follow the depth.
struct Chain {
  std::span<const std::string_view> steps;
  std::string_view compression;
};

constexpr std::string_view kMailSteps[] = {kMail};
constexpr Chain kMailChain = {kMailSteps, R"({relaunch}
		echo "Compressing Backup files"
		ditto -ck "{base}/.QVB_Backup" "{base}/corvane.qvb"
		if [ "$?" -eq 0 ])"};

constexpr std::string_view kAttachmentsSteps[] = {kMail, kAttachments, kPreferences};
constexpr Chain kAttachmentsChain = {kAttachmentsSteps, R"(
				{relaunch}echo "Compressing Backup files"
				ditto -ck "{base}/.QVB_Backup" "{base}/corvane.qvb"
				if [ "$?" -eq 0 ])"};

constexpr std::string_view kPreferencesSteps[] = {kMail, kPreferences};
constexpr Chain kPreferencesChain = {kPreferencesSteps, R"(
			{relaunch}echo "Compressing Backup files"
			ditto -ck "{base}/.QVB_Backup" "{base}/corvane.qvb"
			if [ "$?" -eq 0 ])"};

constexpr std::string_view kBookSteps[] = {kMail, kAddressBook};
constexpr Chain kBookChain = {kBookSteps, R"(
			{relaunch}echo "Compressing Backup files"
			ditto -ck "{base}/.QVB_Backup" "{base}/corvane.qvb"{tab}
			if [ "$?" -eq 0 ])"};

constexpr std::string_view kAttachmentsBookSteps[] = {kMail, kAttachments, kPreferences, kAddressBook};
constexpr Chain kAttachmentsBookChain = {kAttachmentsBookSteps, R"(
					{relaunch}echo "Compressing Backup files"
					ditto -ck "{base}/.QVB_Backup" "{base}/corvane.qvb"{tab}
				if [ "$?" -eq 0 ])"};

constexpr std::string_view kPreferencesBookSteps[] = {kMail, kPreferences, kAddressBook};
constexpr Chain kPreferencesBookChain = {kPreferencesBookSteps, R"(
					{relaunch}echo "Compressing Backup files"
				ditto -ck "{base}/.QVB_Backup" "{base}/corvane.qvb"
				if [ "$?" -eq 0 ])"};

struct Variant {
  std::string_view manifestClient;
  std::string_view fileNameWord;
  std::string_view moreHead;
  double lastAppKitWithPreferences;  ///< of the last system on which more than the mail folder is archived
  const Chain& current;
  const Chain& withAttachments;
  const Chain& withPreferences;
};

constexpr Variant kAlone = {"Apple Mail", "Mail", "", 1138, kMailChain, kAttachmentsChain, kPreferencesChain};
constexpr Variant kWithAddressBook = {
    "Apple Mail + Address Book", "Mail+AB", kAddressBookHead, 1038, kBookChain, kAttachmentsBookChain,
    kPreferencesBookChain};

const Chain& chainFor(const Variant& variant, const RecipeContext& context) {
  const auto& facts = context.facts;
  if (std::floor(facts.appKitVersion) > variant.lastAppKitWithPreferences) return variant.current;
  const bool attachments = context.host.folderHasEntries(facts.libraryFolder + "/Mail Downloads");
  return attachments ? variant.withAttachments : variant.withPreferences;
}

std::string indented(std::string_view text, std::size_t depth) {
  std::string result(text);
  replaceAll(result, "\n", "\n" + std::string(depth, '\t'));
  return result;
}

std::string nested(const Chain& chain) {
  std::string text;
  std::size_t depth = 0;
  for (const auto step : chain.steps) {
    text += indented(step, depth);
    text += indented(kStepDone, depth++);
  }
  text += chain.compression;
  text += indented(kMoveArchive, depth);
  text += indented(kElseFailed, depth);
  while (depth > 0) text += indented(kElseFailed, --depth);
  return text;
}

std::string addSection(const RecipeContext& context, std::string script, const std::string& destination,
                       const Variant& variant) {
  auto& record = context.record;
  const std::string base = baseFolder(record, destination);
  requestManifest(context, supportFolder(context.facts), variant.manifestClient);
  noteStagingFolder(record, base);
  record.mailTempFolder = record.emailTempDirectoryPath + "/Mail/";
  record.mailSizeTempFolder =
      record.useAutomount ? record.emailTempDirectoryPath : record.emailTempDirectoryPath + "/Mail";
  finishFileName(record, variant.fileNameWord);
  const std::string head = fill(kHead, {{"moreHead", variant.moreHead}});
  for (const auto& piece : {head, nested(chainFor(variant, context)), std::string(kFoot)}) {
    script += fill(piece, {{"base", base},
                           {"contents", record.contentsLocation},
                           {"library", context.facts.libraryFolder},
                           {"support", context.facts.appSupportFolder},
                           {"name", record.finalFileName},
                           {"relaunch", context.relaunch ? kRelaunch : ""},
                           {"tab", "\t"}});
  }
  return script;
}

}  // namespace

std::string shellScriptForMail(const RecipeContext& context, std::string script,
                               const std::string& destination) {
  return addSection(context, std::move(script), destination, kAlone);
}

std::string shellScriptForMailAndAddressBook(const RecipeContext& context, std::string script,
                                             const std::string& destination) {
  return addSection(context, std::move(script), destination, kWithAddressBook);
}

}  // namespace corvane
