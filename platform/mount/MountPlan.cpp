#include "platform/mount/MountPlan.h"

#include <algorithm>
#include <cerrno>
#include <string_view>

namespace corvane {
namespace {

struct Protocol {
  std::string_view name;
  MountPlan (*plan)(const MountTask&);
  std::string_view notInUser;  ///< what would end the name where the helper reads it
  std::string_view notInPath;
};

constexpr std::string_view kNotInSshUser = ":/,[]";
constexpr std::string_view kNotInDavUser = ":,";
constexpr std::string_view kNotInDavPath = "%?#";
constexpr std::string_view kNotInCifsUser = ",%/";
constexpr std::string_view kNotInCifsPath = ",\\";

constexpr Protocol kProtocols[] = {{"sftp", planSshfs, kNotInSshUser, ""},
                                   {"ssh", planSshfs, kNotInSshUser, ""},
                                   {"http", planDavfs, kNotInDavUser, kNotInDavPath},
                                   {"dav", planDavfs, kNotInDavUser, kNotInDavPath},
                                   {"https", planSecureDavfs, kNotInDavUser, kNotInDavPath},
                                   {"davs", planSecureDavfs, kNotInDavUser, kNotInDavPath},
                                   {"smb", planCifs, kNotInCifsUser, kNotInCifsPath},
                                   {"cifs", planCifs, kNotInCifsUser, kNotInCifsPath},
                                   {"nfs", planNfs, "", ""}};

constexpr std::size_t kLongestPassword = 1000;

const Protocol* protocolNamed(std::string name) {
  std::transform(name.begin(), name.end(), name.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  const auto* found =
      std::find_if(std::begin(kProtocols), std::end(kProtocols), [&](auto& row) { return row.name == name; });
  return found == std::end(kProtocols) ? nullptr : found;
}

bool hasControls(std::string_view text) {
  return std::any_of(text.begin(), text.end(), [](unsigned char c) { return c < 0x20 || c == 0x7f; });
}

bool holdsAnyOf(std::string_view text, std::string_view bytes) {
  return hasControls(text) || text.find_first_of(bytes) != std::string_view::npos;
}

// What is wrong with the values; nothing when they can be meant.
std::string_view complaint(const Protocol& protocol, const MountTask& task) {
  if (!isVolumeName(task.path) || holdsAnyOf(task.path, protocol.notInPath)) return "the path cannot be used";
  if (task.address.host.empty()) return "the server's name cannot be used";
  if (task.user.starts_with('-') || holdsAnyOf(task.user, protocol.notInUser)) {
    return "the user's name cannot be used";
  }
  const bool odd = task.password.size() > kLongestPassword || holdsAnyOf(task.password, "\n");
  return odd ? "the password cannot be handed over" : "";
}

}  // namespace

bool isVolumeName(const std::string& name) {
  for (std::size_t start = 0; start <= name.size();) {
    const auto end = std::min(name.find('/', start), name.size());
    const auto part = std::string_view(name).substr(start, end - start);
    if (part.empty() || part == "." || part == "..") return false;
    start = end + 1;
  }
  return true;
}

std::optional<MountPlan> mountPlanFor(const ServerVolume& volume, const std::string& folder,
                                      MountOutcome& refusal) {
  const auto refuse = [&](int error, std::string_view cause) {
    refusal = {.error = error, .problem = "cannot mount " + volume.url + ": " + std::string(cause)};
    return std::nullopt;
  };
  const Protocol* protocol = protocolNamed(volume.protocol.value_or(""));
  if (!protocol) return refuse(EPROTONOSUPPORT, "this system knows no such protocol");
  const MountTask task{.address = addressFrom(volume.server.value_or("")).value_or(Address{}),
                       .path = volume.name.value_or(""),
                       .user = volume.user.value_or(""),
                       .password = volume.password.value_or(""),
                       .folder = folder};
  const auto problem = complaint(*protocol, task);
  if (!problem.empty()) return refuse(EINVAL, problem);
  return protocol->plan(task);
}

}  // namespace corvane
