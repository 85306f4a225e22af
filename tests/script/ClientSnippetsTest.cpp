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

constexpr Client kThunderbird = {
    .displayName = "Thunderbird",
    .processPattern = "Thunderbird",
    .application = "Thunderbird",
    .relaunch = "\tosascript -e 'tell application \"Thunderbird\"' -e \"activate\" -e 'end tell'\n\n"};
constexpr Client kEudora8 = {.displayName = "Eudora 8"};
constexpr Client kOutlook = {
    .displayName = "Microsoft Outlook 2011",
    .quitForm = QuitForm::microsoft,
    .quitEcho = "Quiting Outlook...",
    .processPattern = "Microsoft Outlook",
    .application = "Microsoft Outlook",
    .relaunch = "\tosascript -e 'tell application \"Microsoft Outlook\"' -e \"activate\" -e 'end tell'\n\n"};
constexpr Client kEntourage = {
    .displayName = "Microsoft Entourage 2004",
    .quitForm = QuitForm::microsoft,
    .processPattern = "Microsoft Entourage",
    .application = "Microsoft Entourage",
    .relaunch = "\tosascript -e 'tell application \"Microsoft Entourage\"' -e \"activate\" -e 'end tell'\n\n",
    .canGoOffline = true};

const Client* appleMail() { return findClient(clientTable(), "Apple Mail", false); }

std::string joined(const std::vector<const char*>& names) {
  std::string text;
  for (const char* name : names) text += readGolden(std::string("snippets/") + name);
  return text;
}

TEST(ClientSnippets, QuitAndRelaunchTheClient) {
  const bool quit = true;
  const bool relaunch = false;
  const struct {
    bool isHeader;
    const Client* client;
    std::vector<const char*> golden;
    bool withAddressBook = false;
    int minorSystemVersion = 8;
    bool quitEntourage = true;
  } cases[] = {
      {quit, &kThunderbird, {"quit-common"}},
      {quit, appleMail(), {"quit-mail"}},
      {quit, &kOutlook, {"quit-outlook"}},
      {quit, &kOutlook, {"quit-outlook"}, false, 8, false},
      {quit, &kEntourage, {"quit-entourage"}},
      {quit, &kEntourage, {"offline"}, false, 8, false},
      {quit, nullptr, {}},
      {quit, appleMail(), {"quit-mail", "quit-address-book"}, true, 7},
      {quit, appleMail(), {"quit-mail", "quit-contacts"}, true, 8},
      {quit, &kThunderbird, {"quit-common", "quit-address-book"}, true, 0},
      {quit, &kEntourage, {"offline", "quit-contacts"}, true, 15, false},
      {quit, nullptr, {"quit-contacts"}, true},
      {relaunch, &kThunderbird, {"relaunch-common"}},
      {relaunch, &kThunderbird, {"relaunch-common"}, true, 7},
      {relaunch, &kOutlook, {"relaunch-outlook"}, false, 8, false},
      {relaunch, &kEntourage, {"relaunch-entourage"}},
      {relaunch, &kEntourage, {"online"}, true, 8, false},
      {relaunch, &kEudora8, {"relaunch-unknown"}},
      {relaunch, nullptr, {"relaunch-unknown"}, true},
  };
  for (const auto& row : cases) {
    auto facts = annasFacts();
    facts.minorSystemVersion = row.minorSystemVersion;
    auto record = defaultRecord();
    record.quitEntourage = row.quitEntourage;
    EXPECT_TRUE(
        sameText("so far\n" + joined(row.golden),
                 addAppleScriptTo("so far\n", row.client, row.isHeader, row.withAddressBook, record, facts)))
        << "case " << &row - cases;
  }
}

TEST(ClientSnippets, AppleMailIsLaunchedByTheControllersMarker) {
  const auto text = addAppleScriptTo("", appleMail(), false, false, defaultRecord(), annasFacts());
  EXPECT_EQ(text.find(readGolden("snippets/relaunch-unknown") + "\techo \"----Launch Apple Mail----\"\n"),
            0U);
  EXPECT_EQ(text.find("activate"), std::string::npos);
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
