#include "recipes/ClientTable.h"

#include <gtest/gtest.h>

#include "script/ClientSnippets.h"
#include "script/ScriptAssembly.h"
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
  const char* quit;                         // golden snippet
  const char* relaunch;                     // golden snippet
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

class ClientTableTest : public testing::Test {
 protected:
  const std::string& assemble(const ScriptOptions& options) {
    ScriptAssembly(record, facts, clientTable(), host).assemble(options);
    return record.shellScript;
  }

  RunRecord record = defaultRecord();
  Facts facts = annasFacts();
  FakeScriptHost host;
};

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

// By "Language" from 0 on: where the Microsoft clients keep their data, and how their archives' names end.
struct Language {
  const char* outlook;    // both below Documents
  const char* entourage;  // {v}: its version
  const char* suffix;
};

constexpr Language kLanguages[] = {
    {"Microsoft User Data/Office 2011 Identities", "Microsoft User Data/Office {v} Identities", ""},
    {"Dati Utente Microsoft/Office 2011 Identities", "Dati Utente Microsoft/Identit\u00E0 di Office {v}",
     "-it"},
    {"Microsoft-Benutzerdaten/Office 2011 Identities", "Microsoft-Benutzerdaten/Office {v}-Identit\u00E4ten",
     "-de"},
    {"Donn\u00E9es utilisateurs Microsoft/Office 2011 Identities",
     "Donn\u00E9es utilisateurs Microsoft/Utilisateurs Office {v}", "-fr"},
    {"Microsoft User Data/Office 2011 Identities", "Microsoft User Data/Office {v} Identities", "-du"},
    {"Datos de usuario de Microsoft/Office 2011 Identities",
     "Datos de usuario de Microsoft/Identidades de Office {v}", "-es"},
};

TEST_F(ClientTableTest, LanguageChoosesFolderAndNameOfTheMicrosoftClients) {
  record.filenameTemplate = "(Email Client).qvb";
  for (const std::string_view version : {"2011", "2008", "2004", "X"}) {
    const bool isOutlook = version == "2011";
    const std::string product = isOutlook ? "Outlook" : version == "X" ? "Entourage v." : "Entourage ";
    const std::string client = "Microsoft " + product + (isOutlook ? " " : "") + std::string(version);
    std::int32_t number = 0;
    for (const Language& language : kLanguages) {
      const auto& script = assemble({.clients = {client}, .destination = "/Disk", .language = number++});
      std::string folder = fill(isOutlook ? language.outlook : language.entourage, {{"v", version}});
      if (version == "2008") replaceAll(folder, "Utilisateurs", "Identit\u00E9s");
      folder = "/Users/anna/Documents/" + folder;
      std::string word = client.substr(10) + language.suffix;
      for (const char* blank : {" ", "."}) replaceAll(word, blank, "");
      EXPECT_TRUE(contains(script, "--rsrc \"" + folder + "\" \"/Disk/corvane.qvb\"\n")) << folder;
      EXPECT_TRUE(contains(script, "mv \"/Disk/corvane.qvb\" \"/Disk/" + word + ".qvb\"\n")) << word;
    }
  }
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
