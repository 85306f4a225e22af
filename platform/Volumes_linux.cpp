#include <cstdlib>
#include <memory>

#include "platform/SystemVolumes.h"
#include "platform/mount/ServerMount.h"

namespace corvane {
namespace {

constexpr const char* kVolumes = "/Volumes";

}  // namespace

bool SystemVolumes::isMounted(const std::string& name) { return isVolumeMounted(kVolumes, name); }

MountOutcome SystemVolumes::mountServer(const ServerVolume& volume) {
  return mountServerVolume(kVolumes, volume);
}

// What an alias is on macOS, a symbolic link is here.
std::optional<std::string> SystemVolumes::findOriginalFromAlias(const std::string& path) {
  const std::unique_ptr<char, void (*)(void*)> original(::realpath(path.c_str(), nullptr), std::free);
  if (!original) return std::nullopt;
  return std::string(original.get());
}

}  // namespace corvane
