#include "platform/mount/MountPlan.h"

namespace corvane {
namespace {

// A server that falls silent is noticed within fifteen seconds. The volume then stays where it is and answers
// every access with an error until the server is back: without "reconnect" it would vanish, and what is
// copied to it would land in the empty folder on this disk.
constexpr const char* kOptions[] = {"reconnect", "ServerAliveInterval=5", "ServerAliveCountMax=3",
                                    "ConnectTimeout=10"};

// Not the keys of whoever runs this; the backslash keeps the list in one piece.
constexpr const char* kOnlyPassword[] = {"PubkeyAuthentication=no",
                                         "PreferredAuthentications=password\\,keyboard-interactive",
                                         "NumberOfPasswordPrompts=1"};

// A server that is met for the first time is believed; one that is not the same any more is not.
constexpr const char* kHostKeys[] = {"StrictHostKeyChecking=accept-new",
                                     "UserKnownHostsFile=${HOME}/.ssh/known_hosts"};

}  // namespace

MountPlan planSshfs(const MountTask& task) {
  MountPlan plan{.helper = "sshfs"};
  auto& arguments = plan.arguments;
  const auto option = [&](const char* text) { arguments.insert(arguments.end(), {"-o", text}); };
  for (const char* text : kOptions) option(text);
  for (const char* text : kHostKeys) option(text);
  if (task.password.empty()) {
    option("BatchMode=yes");
  } else {
    option("password_stdin");
    for (const char* text : kOnlyPassword) option(text);
    plan.input = task.password + "\n";
  }
  if (!task.address.port.empty()) arguments.insert(arguments.end(), {"-p", task.address.port});
  const std::string user = task.user.empty() ? "" : task.user + "@";
  arguments.push_back(user + task.address.bracketed() + ":/" + task.path);
  arguments.push_back(task.folder);
  return plan;
}

}  // namespace corvane
