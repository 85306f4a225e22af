// What the recipes have in common: where a run builds its archives, the manifest, and naming the archive.
// Pure functions over the run record; thread: main; none fails.
#pragma once

#include <string>
#include <string_view>

#include "script/Client.h"

namespace corvane {

/// The folder in which the archive is built: /tmp for a server destination, else the destination.
[[nodiscard]] std::string baseFolder(const RunRecord& record, const std::string& destination);

/// Asks for a manifest naming `client` as "Contents.plist" in `folder`, and notes it in the record as the one
/// to delete when the run ends.
void requestManifest(const RecipeContext& context, const std::string& folder, std::string_view client);

/// The folder of the program's own files, where the manifests of the staging recipes are written.
[[nodiscard]] std::string supportFolder(const Facts& facts);

/// Notes `base`/.QVB_Backup as the folder to clean up after a failed or cancelled run.
void noteStagingFolder(RunRecord& record, const std::string& base);

/// Completes the record's file name with the client's word.
void finishFileName(RunRecord& record, std::string_view word);

}  // namespace corvane
