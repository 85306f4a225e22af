#include "script/ScriptAssembly.h"

#include "script/Text.h"
#include "tests/support/Golden.h"
#include "tests/support/ScriptFixtures.h"

namespace corvane {
namespace {

using ScriptAssemblyTest = ScriptTest;

TEST_F(ScriptAssemblyTest, WholeScriptsAreByteForByteTheGoldenOnes) {
  const std::vector<std::string> mail = {"Apple Mail"};
  const std::vector<std::string> two = {"Postbox", "Microsoft Outlook 2011"};
  struct {
    const char* golden;
    bool useAutomount;
    double progressMaximum;
    ScriptOptions options;
  } rows[] = {
      {"no-clients", false, 101, {}},
      {"no-clients", true, 101, {.relaunchClient = true, .numberOfBackups = 5}},
      {"no-clients-shutdown", false, 101, {.shutdownOnCompletion = true}},
      {"mail", false, 8, {.clients = mail}},
      {"mail-relaunch-rotation", false, 8, {.clients = mail, .relaunchClient = true, .numberOfBackups = 5}},
      {"mail-server-rotation", true, 11, {.clients = mail, .numberOfBackups = 2}},
      {"mail-server-relaunch", true, 11, {.clients = mail, .relaunchClient = true}},
      {"two-mail-shutdown",
       false,
       8,
       {.clients = {"Apple Mail", "Apple Mail"}, .relaunchClient = true, .shutdownOnCompletion = true}},
      {"two-clients", true, 7, {.clients = two, .language = 3, .relaunchClient = true, .numberOfBackups = 3}},
      {"unknown-first",
       false,
       8,
       {.clients = {"Pine", "Apple Mail"}, .relaunchClient = true, .numberOfBackups = 5}},
      // An unknown name has its server copy too, and leaves the maximum of the client before it.
      {"unknown-second",
       true,
       14,
       {.clients = {"Apple Mail", "apple mail"}, .relaunchClient = true, .numberOfBackups = 5}},
  };
  for (auto& row : rows) {
    row.options.destination = kBackupDisk;
    record = defaultRecord();
    record.useAutomount = row.useAutomount;
    EXPECT_EQ(assemble(row.options), readGolden(std::string("scripts/") + row.golden)) << row.golden;
    EXPECT_EQ(record.progressMaximum, row.progressMaximum) << row.golden;
  }
}

TEST_F(ScriptAssemblyTest, KeepsAtLeastOneBackup) {
  for (const int limit : {0, -3}) {
    EXPECT_TRUE(
        contains(assemble({.clients = {"Apple Mail"}, .numberOfBackups = limit}), "\n\tmaxbackups=1\n"));
  }
}

TEST_F(ScriptAssemblyTest, ShutdownSuppressesEveryRelaunch) {
  const auto& script = assemble({.clients = {"Apple Mail", "Postbox", "Microsoft Entourage 2004", "Pine"},
                                 .relaunchClient = true,
                                 .shutdownOnCompletion = true});
  EXPECT_FALSE(contains(script, "Launching") || contains(script, "Online"));
  EXPECT_EQ(host.measured, 1);  // for the one client whose progress is watched
}

TEST_F(ScriptAssemblyTest, StartsAnewEveryTime) {
  record.useAutomount = true;
  for (int run = 0; run < 2; ++run)
    assemble({.clients = {"Apple Mail", "Postbox"}, .backupAddressBook = true});
  EXPECT_EQ(record.copiedArchives, (std::vector<std::string>{"Studio-anna-Mail+AB-`date +%d%b%Y`.qvb",
                                                             "Studio-anna-Postbox-`date +%d%b%Y`.qvb"}));
  ASSERT_EQ(record.manifests.size(), 2U);
  EXPECT_EQ(record.manifests[0].client, "Apple Mail + Address Book");
  EXPECT_EQ(record.contentsLocation, record.manifests[1].path);
}

}  // namespace
}  // namespace corvane
