#include "recipes/ClientTable.h"

#include "script/ClientSnippets.h"
#include "script/Text.h"
#include "tests/support/Golden.h"
#include "tests/support/ScriptFixtures.h"

namespace corvane {
namespace {

struct Row {
  const char* client;
  bool withAddressBook;
  const char* rotationTag;
  double progressMaximum;
  const char *quit, *relaunch;              // golden snippets
  const char* application = "Thunderbird";  // takes its place in the snippets
};

constexpr Row kRows[] = {
    {"Apple Mail", true, "Mail+AB", 9, "quit-mail", "relaunch-mail"},
    {"Apple Mail", false, "Mail", 7, "quit-mail", "relaunch-mail"},
    {"Microsoft Outlook 2011", false, "Outlook2011", 3, "quit-outlook", "relaunch-outlook"},
    {"Microsoft Entourage 2008", false, "Entourage2008", 3, "quit-entourage", "relaunch-entourage"},
    {"Microsoft Entourage 2004", false, "Entourage2004", 3, "quit-entourage", "relaunch-entourage"},
    {"Microsoft Entourage v.X", false, "EntouragevX", 3, "quit-entourage", "relaunch-entourage"},
    {"Thunderbird", false, "Thunderbird", 3, "quit-common", "relaunch-common"},
    {"Postbox", false, "Postbox", 3, "quit-common", "relaunch-common", "Postbox"},
    {"Eudora", false, "Eudora", 3, "quit-common", "relaunch-common", "Eudora"},
    {"Eudora 8", false, "Eudora 8", 3, "quit-common", "relaunch-unknown", "Eudora"},
    {"GyazMail", false, "GyazMail", 4, "quit-common", "relaunch-common", "GyazMail"},
    {"Mailsmith", false, "Mailsmith", 4, "quit-common", "relaunch-common", "Mailsmith"},
};

using ClientTableTest = ScriptTest;

TEST_F(ClientTableTest, HoldsEveryClientInItsOrder) {
  ASSERT_EQ(clientTable().size(), std::size(kRows));
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.client);
    const Client& client = clientTable()[static_cast<std::size_t>(&row - kRows)];
    EXPECT_EQ(findClient(clientTable(), row.client, row.withAddressBook), &client);
    EXPECT_EQ(findClient(clientTable(), row.client, true), &client - (&row == &kRows[1] ? 1 : 0));
    EXPECT_EQ(client.rotationTag, row.rotationTag);
    assemble({.clients = {row.client}, .backupAddressBook = row.withAddressBook});
    EXPECT_EQ(record.progressMaximum, row.progressMaximum + 1);
  }
  for (const char* name : {"", "eudora", "Eudora ", " Eudora", "Eudora 88", "APPLE MAIL", "Apple"}) {
    EXPECT_EQ(findClient(clientTable(), name, false), nullptr) << name;
  }
}

TEST_F(ClientTableTest, QuitsAndRelaunchesEveryClientAndOnlyEntourageGoesOffline) {
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.client);
    const Client* client = findClient(clientTable(), row.client, row.withAddressBook);
    for (const bool quit : {true, false}) {
      record.quitEntourage = quit;
      const bool offline = !quit && contains(row.client, "Entourage");
      for (const bool isHeader : {true, false}) {
        const std::string name = isHeader  ? (offline ? "offline" : row.quit)
                                 : offline ? "online"
                                           : row.relaunch;
        EXPECT_EQ(addAppleScriptTo("so far\n", client, isHeader, false, record, facts),
                  "so far\n" + readGolden("snippets/" + name, {{"Thunderbird", row.application}}));
      }
    }
  }
}

// By "Language" from 0 on: where they keep their data, and how their archives' names end.
TEST_F(ClientTableTest, LanguageChoosesFolderAndNameOfTheMicrosoftClients) {
  record.filenameTemplate = "(Email Client).qvb";
  std::string chosen;
  for (const std::string client : {"Outlook 2011", "Entourage 2008", "Entourage 2004", "Entourage v.X"}) {
    chosen += client + "\n";
    for (std::int32_t language = 0; language < 6; ++language) {
      const auto& script =
          assemble({.clients = {"Microsoft " + client}, .destination = "/Disk", .language = language});
      for (const char* part : {"--rsrc", "mv \""}) {
        const auto at = script.find(part);
        chosen += "\t" + script.substr(at, script.find('\n', at) + 1 - at);
      }
    }
  }
  EXPECT_EQ(chosen, readGolden("microsoft/languages"));
}

TEST_F(ClientTableTest, AnUnknownLanguageLeavesFolderAndNameAsTheyWere) {
  for (const std::int32_t language : {6, -1, INT32_MIN}) {
    record.microsoftSourceFolder = "/held before";
    const auto& script =
        assemble({.clients = {"Microsoft Entourage 2004"}, .destination = "/Disk", .language = language});
    EXPECT_TRUE(contains(script, "--rsrc \"/held before\" \"/Disk/corvane.qvb\"\n"));
    EXPECT_TRUE(contains(script, "\"/Disk/Studio-anna-(Email Client)-`date"));
  }
  record = defaultRecord();
  EXPECT_TRUE(contains(assemble({.clients = {"Microsoft Outlook 2011"}, .language = 6}),
                       "--rsrc \"\" \"/corvane.qvb\"\n"));
  EXPECT_TRUE(record.manifests.empty());
  EXPECT_EQ(record.contentsLocation, "");
}

}  // namespace
}  // namespace corvane
