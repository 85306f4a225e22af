#include "recipes/MailAndPreferences.h"

#include <string_view>
#include <utility>

#include "recipes/Staging.h"
#include "script/Text.h"

namespace corvane {
namespace {

constexpr std::string_view kHead = R"(echo "Creating Backup files"
mkdir "{base}/.QVB_Backup"
ditto -X "{contents}" "{base}/.QVB_Backup/Contents.plist"
)";

constexpr std::string_view kGyazMail = R"(echo "Backing up GyazMail Database..."
ditto -ckX "{library}/Application\ Support/GyazMail" "{base}/.QVB_Backup/GyazMail.zip"
ditto "{library}/Preferences/jp.gyazsquare.GyazMail.plist" "{base}/.QVB_Backup/jp.gyazsquare.GyazMail.plist"
echo "Compressing Backup files"
ditto -ckX "{base}/.QVB_Backup" "{base}/corvane.qvb"
mv "{base}/corvane.qvb" "{base}/{name}"
)";

// The quote missing before the first path of `mv` belongs to the format.
constexpr std::string_view kMailsmith = R"(echo "Backing up Mailsmith Database..."
ditto -ckX "{home}/Mail/Mailsmith User Data" "{base}/.QVB_Backup/Mailsmith.zip"
ditto -ckX "{library}/Preferences/Mailsmith Preferences" "{base}/.QVB_Backup/MailsmithPrefs.zip"
echo "Compressing Backup files..."
ditto -ckX "{base}/.QVB_Backup" "{base}/corvane.qvb"
mv {base}/corvane.qvb" "{base}/{name}"
)";

constexpr std::string_view kFoot = R"(rm -r -f "{base}/.QVB_Backup")";

std::string addSection(const RecipeContext& context, std::string script, const std::string& destination,
                       std::string_view steps) {
  const auto& facts = context.facts;
  auto& record = context.record;
  const std::string base = baseFolder(record, destination);
  requestManifest(context, supportFolder(facts), context.client.displayName);
  noteStagingFolder(record, base);
  finishFileName(record, context.client.displayName);
  for (const auto piece : {kHead, steps, kFoot}) {
    script += fill(piece, {{"base", base},
                           {"contents", record.contentsLocation},
                           {"library", facts.libraryFolder},
                           {"home", facts.homeDirectory},
                           {"name", record.finalFileName}});
  }
  return script;
}

}  // namespace

std::string shellScriptForGyazMail(const RecipeContext& context, std::string script,
                                   const std::string& destination) {
  return addSection(context, std::move(script), destination, kGyazMail);
}

std::string shellScriptForMailsmith(const RecipeContext& context, std::string script,
                                    const std::string& destination) {
  return addSection(context, std::move(script), destination, kMailsmith);
}

}  // namespace corvane
