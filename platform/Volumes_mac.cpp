#include <CoreServices/CoreServices.h>

#include <array>

#include "platform/SystemVolumes.h"

// Newer systems call these deprecated, but have them as the older ones do.
#pragma clang diagnostic ignored "-Wdeprecated-declarations"

namespace corvane {

std::optional<std::string> SystemVolumes::findOriginalFromAlias(const std::string& path) {
  const auto* stored = reinterpret_cast<const UInt8*>(path.c_str());
  FSRef file{};
  if (FSPathMakeRef(stored, &file, nullptr) != noErr) return std::nullopt;
  Boolean isFolder = false;
  Boolean wasAlias = false;
  const Boolean followChains = true;
  if (FSResolveAliasFile(&file, followChains, &isFolder, &wasAlias) != noErr) return std::nullopt;
  std::array<UInt8, 1024> original{};
  const auto size = static_cast<UInt32>(original.size());
  if (FSRefMakePath(&file, original.data(), size) != noErr) return std::nullopt;
  return std::string(reinterpret_cast<const char*>(original.data()));
}

}  // namespace corvane
