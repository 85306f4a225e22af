#include "script/ClientSnippets.h"

#include <unistd.h>

#include <chrono>
#include <filesystem>

#include <gtest/gtest.h>

#include "process/RunTool.h"
#include "process/ScriptInterpreter.h"
#include "recipes/ClientTable.h"
#include "tests/support/Golden.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/ScriptFixtures.h"

namespace corvane {
namespace {

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
    auto facts = annasFacts();
    facts.minorSystemVersion = row.minorSystemVersion;
    auto record = defaultRecord();
    record.quitEntourage = false;
    const Client* client = findClient(clientTable(), row.client, true);
    EXPECT_EQ(addAppleScriptTo("so far\n", client, row.isHeader, true, record, facts), expected)
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
  const std::string snippet = addAppleScriptTo("", &client, true, false, RunRecord(), Facts());
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
