// What is asked of a file server: the description of a server volume as the mount call wants it.
// Plain values and pure functions; any thread.
#pragma once

#include <string>
#include <string_view>

#include "app/BackupConfiguration.h"
#include "app/PropertyLists.h"
#include "app/Volumes.h"

namespace corvane {

using MountRequest = PropertyListDictionary;

inline constexpr const char* kServerNameKey = "kServerNameKey";
inline constexpr const char* kVolumeNameKey = "kVolumeNameKey";
inline constexpr const char* kTransportNameKey = "kTransportNameKey";
inline constexpr const char* kMountDirectoryKey = "kMountDirectoryKey";
inline constexpr const char* kUserNameKey = "kUserNameKey";
inline constexpr const char* kPasswordKey = "kPasswordKey";
inline constexpr const char* kAsyncKey = "kAsyncKey";

/// The request for a volume, in the order of the keys above up to the first value that is missing: without a
/// protocol it holds the server and the volume only. The system chooses the mount directory.
[[nodiscard]] MountRequest mountRequestFor(const Automount& automount);

/// `text` with every byte that may not stand in a URL as "%" and two hexadecimal digits, "%" and "#" among
/// them. The other characters that separate the parts of a URL stay.
[[nodiscard]] std::string percentEscaped(std::string_view text);

/// What the request stands for. A value that is not in it reads "(null)" in the URL.
[[nodiscard]] ServerVolume serverVolumeFrom(const MountRequest& request);

}  // namespace corvane
