// How the files are named that this program and its tools make for a moment only. A run that is killed leaves
// them behind; the next one knows them by these names. Each goes on with characters that differ every time.
#pragma once

namespace corvane {

/// Behind the name of a file that is being written, before six letters and digits.
inline constexpr const char* kNewFile = ".new-";
/// By which owners are compared, before six letters and digits.
inline constexpr const char* kOwnerSample = ".corvane-owner-";
/// The settings of a mount helper, before six letters and digits; an absolute path.
inline constexpr const char* kMountSettings = "/tmp/corvane-mount.";
/// What our `ditto` writes until it is complete, before sixteen hexadecimal digits.
inline constexpr const char* kUnfinishedArchive = ".ditto-";

}  // namespace corvane
