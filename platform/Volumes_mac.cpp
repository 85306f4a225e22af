#include <CoreServices/CoreServices.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "platform/SystemVolumes.h"
#include "platform/mount/MacMount.h"
#include "process/Files.h"

// Newer systems call these deprecated, but have them as the older ones do.
#pragma clang diagnostic ignored "-Wdeprecated-declarations"

namespace corvane {
namespace {

// Releases what a "Create" function of the system answered; nothing for nothing.
template <typename Ref>
class Held {
 public:
  explicit Held(Ref ref) : ref_(ref) {}
  ~Held() {
    if (ref_) CFRelease(ref_);
  }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  Ref get() const { return ref_; }

 private:
  const Ref ref_;
};

CFStringRef textFrom(const std::string& text) {
  return CFStringCreateWithCString(kCFAllocatorDefault, text.c_str(), kCFStringEncodingUTF8);
}

CFStringRef textFrom(const std::optional<std::string>& text) { return text ? textFrom(*text) : nullptr; }

CFURLRef urlFrom(const std::string& url) {
  const Held<CFStringRef> text(url.empty() ? nullptr : textFrom(url));
  return text.get() ? CFURLCreateWithString(kCFAllocatorDefault, text.get(), nullptr) : nullptr;
}

}  // namespace

bool SystemVolumes::isMounted(const std::string& name) { return isFolder("/Volumes/" + name); }

MountOutcome SystemVolumes::mountServer(const ServerVolume& volume) {
  const Held<CFURLRef> server(urlFrom(volume.url));
  const Held<CFURLRef> directory(urlFrom(volume.mountDirectoryUrl));
  const Held<CFStringRef> user(textFrom(volume.user));
  const Held<CFStringRef> password(textFrom(volume.password));
  if (!server.get()) return {.error = EINVAL, .problem = "cannot mount " + volume.url + ": not a URL"};
  MountOutcome outcome = mountUrl({server.get(), directory.get(), user.get(), password.get()});
  if (outcome.error > 0) {
    outcome.problem = "cannot mount " + volume.url + ": " + std::strerror(static_cast<int>(outcome.error));
  }
  return outcome;
}

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
