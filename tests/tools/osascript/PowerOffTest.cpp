#include "tools/osascript/PowerOff.h"

#include <gmock/gmock.h>

#include "tests/support/ScratchFolder.h"

namespace corvane::osascript {
namespace {

struct Machine {
  const char* systemctl;  // the status with which it ends; empty when it is not there
  const char* loginctl;
  const char* calls;
  const char* problem;
};

// Only stand-ins are in reach: the function looks nowhere but in the folders that it is given.
TEST(PowerOffTest, AsksTheFirstManagerThatAccepts) {
  constexpr const char* kBoth = "systemctl --no-ask-password poweroff\nloginctl --no-ask-password poweroff\n";
  const Machine machines[] = {{"", "", "", "the system has no session manager"},
                              {"0", "0", "systemctl --no-ask-password poweroff\n", ""},
                              {"", "0", "loginctl --no-ask-password poweroff\n", ""},
                              {"1", "0", kBoth, ""},
                              {"1", "4", kBoth, "loginctl: Access denied"}};
  for (const auto& machine : machines) {
    const ScratchFolder scratch;
    const auto add = [&](const std::string& name, const std::string& status) {
      if (status.empty()) return;
      scratch.writeScript("bin/" + name, "echo " + name + " \"$@\" >>" + scratch.path("calls") +
                                             "\necho Access denied\necho more\nexit " + status + "\n");
    };
    add("systemctl", machine.systemctl);
    add("loginctl", machine.loginctl);
    EXPECT_EQ(powerOff({scratch.path(), scratch.path("bin")}), machine.problem);
    EXPECT_EQ(scratch.read("calls"), machine.calls);
  }
}

}  // namespace
}  // namespace corvane::osascript
