#include "app/MountRequest.h"

#include <optional>
#include <utility>

#include "process/PercentEncoding.h"

namespace corvane {
namespace {

using Text = std::optional<std::string>;

constexpr const char* kNoValue = "(null)";

Text textOf(const MountRequest& request, const char* key) {
  const auto entry = request.find(key);
  const auto* text = entry == request.end() ? nullptr : entry->second.as<std::string>();
  return text ? Text(*text) : std::nullopt;
}

}  // namespace

MountRequest mountRequestFor(const Automount& automount) {
  const std::pair<const char*, Text> entries[] = {
      {kServerNameKey, automount.server},      {kVolumeNameKey, automount.path},
      {kTransportNameKey, automount.protocol}, {kMountDirectoryKey, ""},
      {kUserNameKey, automount.username},      {kPasswordKey, automount.password}};
  MountRequest request;
  for (const auto& [key, value] : entries) {
    if (!value) return request;
    request[key] = {*value};
  }
  request[kAsyncKey] = {false};
  return request;
}

std::string percentEscaped(std::string_view text) { return percentEncoded(text, ";/?:@&=+$,"); }

ServerVolume serverVolumeFrom(const MountRequest& request) {
  const auto read = [&](const char* key) { return textOf(request, key); };
  ServerVolume volume{.protocol = read(kTransportNameKey),
                      .server = read(kServerNameKey),
                      .name = read(kVolumeNameKey),
                      .user = read(kUserNameKey),
                      .password = read(kPasswordKey)};
  const std::string name = volume.name.value_or(kNoValue);
  volume.url = percentEscaped(volume.protocol.value_or(kNoValue) + "://" + volume.server.value_or(kNoValue) +
                              "/" + name);
  volume.mountDirectory = read(kMountDirectoryKey).value_or("");
  if (!volume.mountDirectory.empty()) {
    volume.mountDirectoryUrl = percentEscaped("/Volumes/" + name + "/" + volume.mountDirectory);
  }
  return volume;
}

}  // namespace corvane
