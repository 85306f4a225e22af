#include "recipes/Staging.h"

#include "script/FileNaming.h"

namespace corvane {

std::string baseFolder(const RunRecord& record, const std::string& destination) {
  return record.useAutomount ? "/tmp" : destination;
}

void requestManifest(const RecipeContext& context, const std::string& folder, std::string_view client) {
  auto& record = context.record;
  record.contentsLocation = folder + "/Contents.plist";
  record.manifests.push_back(
      {record.contentsLocation, std::string(client), record.language, context.facts.today});
}

std::string supportFolder(const Facts& facts) { return facts.appSupportFolder + "/Quillon/Corvane"; }

void noteStagingFolder(RunRecord& record, const std::string& base) {
  record.emailTempDirectoryPath = base + "/.QVB_Backup";
  record.tempFolderStore = record.emailTempDirectoryPath;
}

void finishFileName(RunRecord& record, std::string_view word) {
  nameClient(record.currentFilename, word);
  record.finalFileName = record.currentFilename;
}

}  // namespace corvane
