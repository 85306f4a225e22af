#include "platform/mount/ServerMount.h"

#include <cerrno>
#include <chrono>
#include <cstring>

#include "platform/mount/Helper.h"
#include "platform/mount/MountFolder.h"
#include "platform/mount/MountPlan.h"
#include "platform/mount/VolumeProbe.h"

namespace corvane {
namespace {

constexpr std::chrono::seconds kHelperLimit{30};
constexpr std::chrono::seconds kLookLimit{30};  // long enough for a server whose disks have to start turning
constexpr std::chrono::seconds kDetachLimit{10};

std::string unusable(const std::string& folder, int error) {
  return "cannot use " + folder + ": " + std::strerror(error);
}

// A volume that lost its server would keep the new one from its place, so it is taken away. One that is
// merely slow to answer may be at work for somebody else.
VolumeLook lookAndClear(const std::string& folder) {
  const VolumeLook look = lookAtVolume(folder, kLookLimit);
  if (look.state != VolumeState::broken) return look;
  detachVolume(folder, kDetachLimit);
  return lookAtVolume(folder, kLookLimit);
}

// Some helpers say that all went well and leave a volume that does not answer. Nothing was mounted there
// before, so what is now and does not work is taken away.
MountOutcome mountOn(const std::string& folder, const MountPlan& plan) {
  const MountOutcome outcome = runHelper(plan, {.limit = kHelperLimit});
  const VolumeLook look = lookAtVolume(folder, kLookLimit);
  if (outcome.error == 0 && look.state == VolumeState::mounted) return {.reference = look.device};
  if (look.isMountRoot) detachVolume(folder, kDetachLimit);
  if (outcome.error != 0) return outcome;
  return {.error = look.error, .problem = unusable(folder, look.error)};
}

}  // namespace

bool isVolumeMounted(const std::string& volumes, const std::string& name) {
  return isVolumeName(name) && lookAtVolume(volumes + "/" + name, kLookLimit).state == VolumeState::mounted;
}

MountOutcome mountServerVolume(const std::string& volumes, const ServerVolume& volume) {
  const std::string folder = volumes + "/" + volume.name.value_or("");
  MountOutcome refusal;
  const auto plan = mountPlanFor(volume, folder, refusal);
  if (!plan) return refusal;
  // What cannot be looked into may be somebody else's: nothing is mounted over it, or taken away after that.
  const VolumeLook before = lookAndClear(folder);
  if (before.state == VolumeState::mounted) return {.reference = before.device};
  if (before.error != ENOENT) return {.error = before.error, .problem = unusable(folder, before.error)};
  MountFolder place(folder);
  if (!place.problem().empty()) return {.error = place.error(), .problem = place.problem()};
  MountOutcome outcome = mountOn(folder, *plan);
  if (outcome.error == 0) {
    place.keep();
  } else {
    outcome.problem = "cannot mount " + volume.url + ": " + outcome.problem;
  }
  return outcome;
}

}  // namespace corvane
