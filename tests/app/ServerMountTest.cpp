#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/DestinationCheck.h"
#include "app/MountRequest.h"
#include "tests/support/RecordingPorts.h"
#include "tests/support/StandardError.h"

namespace corvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

const Automount kComplete{"files.local", "Backup Disk", "afp", "anna", "s3cret"};

TEST(MountRequestTest, EndsAtTheFirstMissingValue) {
  const std::vector<std::string> order{"kServerNameKey",     "kVolumeNameKey", "kTransportNameKey",
                                       "kMountDirectoryKey", "kUserNameKey",   "kPasswordKey",
                                       "kAsyncKey"};
  const std::pair<std::optional<std::string> Automount::*, std::size_t> rows[] = {{&Automount::server, 0},
                                                                                  {&Automount::path, 1},
                                                                                  {&Automount::protocol, 2},
                                                                                  {&Automount::username, 4},
                                                                                  {&Automount::password, 5}};
  for (const auto& [missing, count] : rows) {
    Automount automount = kComplete;
    automount.*missing = std::nullopt;
    const auto request = mountRequestFor(automount);
    EXPECT_EQ(request.size(), count);
    for (std::size_t i = 0; i < count; ++i) EXPECT_TRUE(request.contains(order[i])) << order[i];
  }
  auto complete = mountRequestFor(kComplete);
  EXPECT_EQ(complete.size(), order.size());
  EXPECT_FALSE(*complete["kAsyncKey"].as<bool>());
  EXPECT_EQ(*complete["kMountDirectoryKey"].as<std::string>(), "");
  complete["kMountDirectoryKey"] = {std::string("a b")};
  EXPECT_EQ(serverVolumeFrom(complete).mountDirectoryUrl, "/Volumes/Backup%20Disk/a%20b");
}

TEST(MountRequestTest, EscapesWhatMayNotStandInAUrl) {
  EXPECT_EQ(percentEscaped("az AZ09-_.!~*'();/?:@&=+$,"), "az%20AZ09-_.!~*'();/?:@&=+$,");
  EXPECT_EQ(percentEscaped("\"#%<>[\\]^`{|}\t\x7F\u00E9"),
            "%22%23%25%3C%3E%5B%5C%5D%5E%60%7B%7C%7D%09%7F%C3%A9");
}

struct CheckCase {
  const char* name;
  const char* mounted;  // before
  MountOutcome outcome;
  const char* appears;
  bool available;
  std::vector<std::string> events;
  std::vector<const char*> log;
};

class DestinationCheckTest : public testing::TestWithParam<CheckCase> {};

// A local destination that is there is no help to a run that wants a server.
TEST_P(DestinationCheckTest, LooksMountsAndLooksAgain) {
  FakeVolumes volumes;
  volumes.mounted = {GetParam().mounted};
  volumes.outcome = GetParam().outcome;
  volumes.appears = GetParam().appears;
  RecordingPorts ports;
  RunRecord record;
  BackupConfiguration configuration;
  configuration.automount = kComplete;
  configuration.script.destination = "/";
  std::string log;
  {
    const StandardError error;
    const auto show = [&](const std::string& status) { ports.setStatus(status); };
    EXPECT_EQ(isDestinationAvailable(configuration, record, volumes, ports, show), GetParam().available);
    log = error.text();
  }
  EXPECT_TRUE(record.useAutomount);
  EXPECT_EQ(ports.events, GetParam().events);
  for (const char* line : GetParam().log) EXPECT_THAT(log, HasSubstr(std::string("] ") + line + "\n"));
  EXPECT_THAT(log, Not(HasSubstr("s3cret")));
}

const std::string kChecking = "status Checking backup destination...";
const std::string kMounting = "status Mounting Server Volume...";
const std::string kChanged = "changed afp://files.local/Backup%20Disk";

INSTANTIATE_TEST_SUITE_P(
    Outcomes, DestinationCheckTest,
    testing::Values(
        CheckCase{
            "There", "Backup Disk", {}, "", true, {kChecking}, {"Server based destination is available"}},
        CheckCase{"Mounted",
                  "Other",
                  {.reference = -105},
                  "Backup Disk",
                  true,
                  {kChecking, kMounting, kChanged, "status Backup destination mounted"},
                  {"Sync-mounted server afp://files.local/Backup%20Disk, user == anna, refNum == -105",
                   "Server based destination is now available"}},
        CheckCase{"Renamed",
                  "Other",
                  {},
                  "Backup Disk-1",
                  false,
                  {kChecking, kMounting, kChanged},
                  {"Server based destination is not available"}},
        CheckCase{"Failed",
                  "",
                  {.error = -5023, .problem = "no such user"},
                  "",
                  false,
                  {kChecking, kMounting},
                  {"Sync mount failed for server afp://files.local/Backup%20Disk, error == -5023",
                   "no such user", "Server based destination is not available"}},
        CheckCase{"FailedYetThere",
                  "",
                  {.error = 17},
                  "Backup Disk",
                  true,
                  {kChecking, kMounting, "status Backup destination mounted"},
                  {"Server based destination is now available"}}),
    [](const auto& test) { return test.param.name; });

TEST(DestinationCheck, WithoutAPathNothingIsThere) {
  FakeVolumes volumes;
  RecordingPorts ports;
  RunRecord record;
  BackupConfiguration configuration;
  configuration.automount = Automount{.server = "files.local"};
  const StandardError error;
  EXPECT_FALSE(isDestinationAvailable(configuration, record, volumes, ports, [](const auto&) {}));
  ASSERT_EQ(volumes.asked.size(), 1U);
  EXPECT_EQ(volumes.asked[0].url, "(null)://files.local/(null)");
  EXPECT_EQ(volumes.asked[0].user, std::nullopt);
}

}  // namespace
}  // namespace corvane
