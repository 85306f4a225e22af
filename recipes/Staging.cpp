#include "recipes/Staging.h"

#include "script/FileNaming.h"
#include "script/Text.h"

namespace corvane {
namespace {

constexpr std::string_view kArchiveFolder = R"({announcement}
	ditto -c -k -X --rsrc "{folder}" "{base}/corvane.qvb"
	if [ "$?" -eq 0 ])";

}  // namespace

std::string baseFolder(const RunRecord& record, const std::string& destination) {
  return record.useAutomount ? "/tmp" : destination;
}

void requestManifest(const RecipeContext& context, const std::string& folder, std::string_view client) {
  auto& record = context.record;
  record.contentsLocation = folder + "/Contents.plist";
  record.manifests.push_back({record.contentsLocation, std::string(client), record.language});
}

void noteStagingFolder(RunRecord& record, const std::string& base) {
  record.emailTempDirectoryPath = base + "/" + std::string(kStagingName);
  record.tempFolderStore = record.emailTempDirectoryPath;
}

void finishFileName(RunRecord& record, std::string_view word) {
  nameClient(record.currentFilename, word);
  record.finalFileName = record.currentFilename;
}

std::string archiveFolder(const RecipeContext& context, const std::string& destination,
                          const std::string& folder, std::string_view announcement) {
  // Without a folder, as an unknown language leaves it, a manifest would land in the root of the disk.
  if (!folder.empty()) requestManifest(context, folder, context.client.displayName);
  const std::string original = context.host.findOriginalFromAlias(folder).value_or(folder);
  const std::string base = baseFolder(context.record, destination);
  std::string section;
  for (const auto piece : {kArchiveFolder, kMoveArchive, kElseFailed}) {
    section += fill(piece, {{"announcement", announcement},
                            {"folder", original},
                            {"base", base},
                            {"name", context.record.finalFileName}});
  }
  return section;
}

}  // namespace corvane
