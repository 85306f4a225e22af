// How a server volume of each protocol is mounted on this system: which helper, and what it is told. One
// source file per helper; which protocol goes with which helper stands in one table. Pure functions; any
// thread.
//
// The password goes to a helper's standard input and nowhere else. What could be taken for an option, for
// another host or for a second option is refused before a plan is made.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/Volumes.h"
#include "platform/mount/Address.h"

namespace corvane {

struct MountPlan {
  std::string helper;                  ///< name of a program
  std::vector<std::string> arguments;  ///< without the program's name
  std::string input;                   ///< what it reads from standard input
  std::string settings;                ///< text of a file that the argument `kSettingsFile` names
  std::vector<std::pair<std::string, std::string>> variables;  ///< of its environment
  std::string failure;                ///< words by which it says that it failed, whatever its exit status
  std::vector<std::string> withheld;  ///< names of variables that it must not get from our environment
};

/// The argument in whose place the file with the settings is named.
inline constexpr const char* kSettingsFile = "conf=";

/// What a plan is made of, checked. An absent password is empty.
struct MountTask {
  Address address;
  std::string path;  ///< on the server, without a leading slash; one or more names, none of them dots
  std::string user;  ///< empty for none
  std::string password;
  std::string folder;  ///< where to mount, absolute
};

[[nodiscard]] MountPlan planSshfs(const MountTask& task);
[[nodiscard]] MountPlan planDavfs(const MountTask& task);
[[nodiscard]] MountPlan planSecureDavfs(const MountTask& task);
[[nodiscard]] MountPlan planCifs(const MountTask& task);
[[nodiscard]] MountPlan planNfs(const MountTask& task);

/// True when `name` leads from the folder of all volumes down, and nowhere else.
[[nodiscard]] bool isVolumeName(const std::string& name);

/// The plan for `volume` at `folder`. Nothing when the protocol is unknown here or a value cannot be meant;
/// `refusal` then holds the error and its cause.
[[nodiscard]] std::optional<MountPlan> mountPlanFor(const ServerVolume& volume, const std::string& folder,
                                                    MountOutcome& refusal);

}  // namespace corvane
