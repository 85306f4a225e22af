// What the recipes have in common: where a run builds its archives, the manifest, naming the archive, and the
// text around the making of it. Functions over the run record; thread: main; none fails.
//
// A piece of text starts with a line end and ends without one. {base} and {name} stand for the base folder
// and the archive's final name.
#pragma once

#include <string>
#include <string_view>

#include "script/Client.h"

namespace corvane {

/// What a run makes beside its archives and takes away again: the folder in which data is collected, and the
/// archive until it has its final name.
inline constexpr std::string_view kStagingName = ".QVB_Backup";
inline constexpr std::string_view kArchiveInProgress = "corvane.qvb";

/// The folder in which the archive is built: /tmp for a server destination, else the destination.
[[nodiscard]] std::string baseFolder(const RunRecord& record, const std::string& destination);

/// Asks for a manifest naming `client` as "Contents.plist" in `folder`, and notes it in the record as the one
/// to delete when the run ends.
void requestManifest(const RecipeContext& context, const std::string& folder, std::string_view client);

/// Notes `base`/.QVB_Backup as the folder to clean up after a failed or cancelled run.
void noteStagingFolder(RunRecord& record, const std::string& base);

/// Completes the record's file name with the client's word.
void finishFileName(RunRecord& record, std::string_view word);

/// What follows the test of the command that built the archive: its renaming, and `errorCode` for a failure
/// of either. One tab deep.
inline constexpr std::string_view kMoveArchive = R"(
		then
		mv "{base}/corvane.qvb" "{base}/{name}"
		if [ ! "$?" -eq 0 ]
			then
			errorCode=1
		fi)";

/// The end of a test that failed, of the same depth.
inline constexpr std::string_view kElseFailed = R"(
	else
		errorCode=1
	fi)";

/// The section of a client that keeps everything in one folder: a manifest in `folder` itself, then `folder`
/// archived straight into the archive that becomes the record's final file name. An alias is archived as the
/// folder it points to. `announcement` is the section's first line.
[[nodiscard]] std::string archiveFolder(const RecipeContext& context, const std::string& destination,
                                        const std::string& folder, std::string_view announcement);

}  // namespace corvane
