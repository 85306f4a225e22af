#include "script/ScriptAssembly.h"

#include <unistd.h>
#include <chrono>

#include "process/RunTool.h"
#include "process/ScriptInterpreter.h"
#include "script/ClientSnippets.h"
#include "script/OutputTexts.h"
#include "script/Text.h"
#include "tests/support/Golden.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/ScriptFixtures.h"

namespace corvane {
namespace {

using ScriptAssemblyTest = ScriptTest;

TEST_F(ScriptAssemblyTest, WholeScriptsAreByteForByteTheGoldenOnes) {
  const std::vector<std::string> mail = {"Apple Mail"}, twice = {"Apple Mail", "Apple Mail"};
  const std::vector<std::string> two = {"Postbox", "Microsoft Outlook 2011"};
  const std::vector<std::string> first = {"Pine", "Apple Mail"}, second = {"Apple Mail", "apple mail"};
  struct {
    const char* golden;
    bool useAutomount;
    double progressMaximum;
    ScriptOptions options;
  } rows[] = {
      {"no-clients", false, 101, {}},
      {"no-clients", true, 101, {.relaunchClient = true, .numberOfBackups = 5}},
      {"mail", false, 8, {.clients = mail}},
      {"two-mail-shutdown",
       false,
       8,
       {.clients = twice, .relaunchClient = true, .shutdownOnCompletion = true}},
      {"two-clients", true, 7, {.clients = two, .language = 3, .relaunchClient = true, .numberOfBackups = 3}},
      {"unknown-first", false, 8, {.clients = first, .relaunchClient = true, .numberOfBackups = 5}},
      // An unknown name has its server copy too, and leaves the maximum of the client before it.
      {"unknown-second", true, 14, {.clients = second, .relaunchClient = true, .numberOfBackups = 5}},
  };
  for (auto& row : rows) {
    row.options.destination = kBackupDisk;
    record = defaultRecord();
    record.useAutomount = row.useAutomount;
    EXPECT_EQ(assemble(row.options), readGolden(std::string("scripts/") + row.golden)) << row.golden;
    EXPECT_EQ(record.progressMaximum, row.progressMaximum) << row.golden;
  }
}

TEST_F(ScriptAssemblyTest, PrintsWhatTheControllerLooksFor) {
  record.useAutomount = true;
  const auto& script = assemble({.clients = {"Apple Mail"}, .relaunchClient = true, .numberOfBackups = 5});
  for (const auto text :
       {kResultsText, kWaitingText, kServerCopyText, kRemovalText, kLaunchMailText, kSuccessText}) {
    EXPECT_TRUE(contains(script, text)) << text;
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

// The clients themselves are gone through with their table.
TEST(ClientSnippets, QuitTheAddressBookWhateverTheClient) {
  const struct {
    const char* client;
    bool isHeader;
    int minorSystemVersion;
    std::string golden[2];
  } rows[] = {
      {"Apple Mail", true, 7, {"quit-mail", "quit-address-book"}},
      {"Apple Mail", true, 8, {"quit-mail", "quit-contacts"}},
      {"Microsoft Entourage 2004", true, 0, {"offline", "quit-address-book"}},
      {"Pine", true, 15, {"quit-contacts"}},
      {"Thunderbird", false, 7, {"relaunch-common"}},
      {"Pine", false, 8, {"relaunch-unknown"}},
  };
  for (const auto& row : rows) {
    std::string expected = "so far\n";
    for (const auto& name : row.golden) expected += name.empty() ? "" : readGolden("snippets/" + name);
    const QuitChoice choice{.quitEntourage = false, .minorSystemVersion = row.minorSystemVersion};
    const Client* client = findClient(clientTable(), row.client, true);
    EXPECT_EQ(addAppleScriptTo("so far\n", client, row.isHeader, true, choice), expected)
        << row.client << " on " << row.minorSystemVersion;
  }
}

// A stand-in that quits some time after it was asked to, and then one that does not run.
TEST(ClientSnippets, TheQuitLoopWaitsForAClientThatTakesItsTime) {
  const ScratchFolder folder;
  const std::string name = "corvane-slow-client-" + std::to_string(::getpid());
  std::filesystem::copy_file("/bin/sleep", folder.path(name));
  const std::string start = folder.path(name) + " 1000 >/dev/null 2>&1 & echo $!";
  const std::string pid = runTool({"/bin/sh", "-c", start}).output;
  ASSERT_NE(pid, "");
  // A program of its own does the waiting: the arguments of this one hold the client's name, as `ps` sees it.
  const auto end = folder.writeScript("end", "sleep 2\nkill " + pid);
  folder.writeScript("osascript", "echo asked\n" + end + " >/dev/null 2>&1 &\n");

  const Client client{.displayName = "Slow", .processPattern = name, .application = name};
  const std::string snippet = addAppleScriptTo("", &client, true, false, {});
  const auto script =
      folder.writeScript("quit.sh", "PATH=" + folder.path() + ":$PATH\n" + snippet + "echo over\n");
  const auto quit = [&] { return runTool(commandForScript({script}, "")).output; };
  const auto before = std::chrono::steady_clock::now();
  EXPECT_EQ(quit(), "Quiting email application...\nasked\nWaiting for " + name + " to quit\nover\n");
  EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::seconds(2));
  EXPECT_EQ(quit(), "Quiting email application...\nover\n");
}

}  // namespace
}  // namespace corvane
