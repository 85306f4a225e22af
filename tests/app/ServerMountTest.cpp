#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/DestinationCheck.h"
#include "app/MountRequest.h"
#include "tests/support/RecordingPorts.h"
#include "tests/support/StandardError.h"

namespace corvane {
namespace {

using testing::HasSubstr;
using Events = std::vector<std::string>;

const Automount kComplete{"files.local", "Backup Disk", "afp", "anna", "s3cret"};

TEST(MountRequestTest, EndsAtTheFirstMissingValue) {
  const char* const order[] = {"kServerNameKey", "kVolumeNameKey", "kTransportNameKey", "kMountDirectoryKey",
                               "kUserNameKey",   "kPasswordKey",   "kAsyncKey"};
  using A = Automount;
  std::optional<std::string> A::*const values[] = {&A::server, &A::path,     &A::protocol,
                                                   nullptr,    &A::username, &A::password};
  for (std::size_t count = 0; count < std::size(values); ++count) {
    if (!values[count]) continue;  // the folder is never missing
    Automount automount = kComplete;
    automount.*values[count] = std::nullopt;
    const auto request = mountRequestFor(automount);
    EXPECT_EQ(request.size(), count);
    for (std::size_t i = 0; i < count; ++i) EXPECT_TRUE(request.contains(order[i])) << order[i];
  }
  auto complete = mountRequestFor(kComplete);
  EXPECT_EQ(complete.size(), std::size(order));
  EXPECT_FALSE(*complete["kAsyncKey"].as<bool>());
  EXPECT_EQ(*complete["kMountDirectoryKey"].as<std::string>(), "");
  complete["kMountDirectoryKey"] = {std::string("a b")};
  EXPECT_EQ(serverVolumeFrom(complete).mountDirectoryUrl, "/Volumes/Backup%20Disk/a%20b");
  EXPECT_EQ(serverVolumeFrom({{"kServerNameKey", {std::string("h")}}}).url, "(null)://h/(null)");
}

TEST(MountRequestTest, EscapesWhatMayNotStandInAUrl) {
  EXPECT_EQ(percentEscaped("az AZ09-_.!~*'();/?:@&=+$,"), "az%20AZ09-_.!~*'();/?:@&=+$,");
  EXPECT_EQ(percentEscaped("\"#%<>[\\]^`{|}\t\x7F\u00E9"),
            "%22%23%25%3C%3E%5B%5C%5D%5E%60%7B%7C%7D%09%7F%C3%A9");
}

// A local destination that is there is no help to a run that wants a server.
TEST(DestinationCheckTest, LooksMountsAndLooksAgain) {
  const std::string mounting = "status Mounting Server Volume...";
  const std::string changed = "changed afp://files.local/Backup%20Disk";
  const std::string mounted = "status Backup destination mounted";
  const std::string url = "server afp://files.local/Backup%20Disk, ";
  const std::string success = "Sync-mounted " + url + "user == anna, refNum == -105\n";
  const std::string failure = "Sync mount failed for " + url + "error == -5023\n";
  const struct {
    const char *before, *after;  // what is mounted then, and what a mount adds
    MountOutcome outcome;
    bool available;
    Events events;  // after the first
    const char* log;
  } rows[] = {{"Backup Disk", "", {}, true, {}, "Server based destination is available"},
              {"", "Backup Disk", {}, true, {mounting, changed, mounted}, "destination is now available"},
              {"", "Backup Disk-1", {.reference = -105}, false, {mounting, changed}, success.c_str()},
              {"", "", {.error = -5023}, false, {mounting}, failure.c_str()},
              {"", "", {.error = 1, .problem = "no such user"}, false, {mounting}, "] no such user\n"},
              {"", "", {.error = 1}, false, {mounting}, "Server based destination is not available"},
              {"", "Backup Disk", {.error = 17}, true, {mounting, mounted}, "destination is now available"}};
  BackupConfiguration configuration;
  configuration.automount = kComplete;
  configuration.script.destination = "/";
  for (const auto& row : rows) {
    const StandardError log;
    FakeVolumes volumes;
    volumes.mounted = {row.before};
    volumes.outcome = row.outcome;
    volumes.appears = row.after;
    RecordingPorts ports;
    RunRecord record;
    const auto show = [&](const std::string& status) { ports.setStatus(status); };
    EXPECT_EQ(isDestinationAvailable(configuration, record, volumes, ports, show), row.available) << row.log;
    Events events{"status Checking backup destination..."};
    events.insert(events.end(), row.events.begin(), row.events.end());
    EXPECT_EQ(ports.events, events) << row.log;
    EXPECT_THAT(log.text(), testing::AllOf(HasSubstr(row.log), testing::Not(HasSubstr("s3cret"))));
    EXPECT_TRUE(record.useAutomount);
  }
}

}  // namespace
}  // namespace corvane
