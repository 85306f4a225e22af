#include "tools/osascript/PowerOff.h"

#include <gmock/gmock.h>

#include "tests/support/ScratchFolder.h"

namespace corvane::osascript {
namespace {

struct Machine {
  int systemctl;  // the status with which it ends; negative when it is not there
  int loginctl;
  const char* calls;
  const char* problem;
};

const Machine kMachines[] = {
    {-1, -1, "", "the system has no session manager"},
    {0, 0, "systemctl --no-ask-password poweroff\n", ""},
    {-1, 0, "loginctl --no-ask-password poweroff\n", ""},
    {1, 0, "systemctl --no-ask-password poweroff\nloginctl --no-ask-password poweroff\n", ""},
    {1, 4, "systemctl --no-ask-password poweroff\nloginctl --no-ask-password poweroff\n",
     "loginctl: Access denied"},
};

// Only stand-ins are in reach: the function looks nowhere but in the folders that it is given.
TEST(PowerOffTest, AsksTheFirstManagerThatAccepts) {
  for (const auto& machine : kMachines) {
    const ScratchFolder scratch;
    const auto add = [&](const std::string& name, int status) {
      if (status < 0) return;
      scratch.writeScript("bin/" + name, "echo " + name + " \"$@\" >>" + scratch.path() +
                                             "/calls\necho Access denied\necho more\nexit " +
                                             std::to_string(status) + "\n");
    };
    add("systemctl", machine.systemctl);
    add("loginctl", machine.loginctl);
    EXPECT_EQ(powerOff({scratch.path(), scratch.path("bin")}), machine.problem);
    EXPECT_EQ(scratch.read("calls"), machine.calls);
  }
}

TEST(PowerOffTest, StartsItsToolByAbsolutePath) {
  const ScratchFolder scratch;
  scratch.writeScript("loginctl", "");
  const auto commands = powerOffCommands({scratch.path()});
  ASSERT_EQ(commands.size(), 1U);
  EXPECT_EQ(commands[0].program, scratch.path("loginctl"));
}

}  // namespace
}  // namespace corvane::osascript
