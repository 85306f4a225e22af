#include "recipes/ClientTable.h"

#include <gtest/gtest.h>

#include "script/ClientSnippets.h"
#include "script/ScriptAssembly.h"
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
    {"Apple Mail", true, "Mail+AB", 9, "quit-mail", nullptr},
    {"Apple Mail", false, "Mail", 7, "quit-mail", nullptr},
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

std::string snippet(const Row& row, const char* name) {
  return readGolden(std::string("snippets/") + name, {{"Thunderbird", row.application}});
}

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
  for (std::size_t i = 0; i < std::size(kRows); ++i) {
    SCOPED_TRACE(kRows[i].client);
    const Client& client = clientTable()[i];
    EXPECT_EQ(findClient(clientTable(), kRows[i].client, kRows[i].withAddressBook), &client);
    EXPECT_EQ(client.rotationTag, kRows[i].rotationTag);
  }
}

TEST_F(ClientTableTest, QuitsAndRelaunchesEveryClient) {
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.client);
    const Client* client = findClient(clientTable(), row.client, row.withAddressBook);
    EXPECT_TRUE(sameText(snippet(row, row.quit), addAppleScriptTo("", client, true, false, record, facts)));
    if (!row.relaunch) continue;  // the section of Apple Mail does that
    EXPECT_TRUE(
        sameText(snippet(row, row.relaunch), addAppleScriptTo("", client, false, false, record, facts)));
  }
}

TEST_F(ClientTableTest, OnlyEntourageCanGoOffline) {
  record.quitEntourage = false;
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.client);
    const Client* client = findClient(clientTable(), row.client, row.withAddressBook);
    const bool entourage = std::string_view(row.client).find("Entourage") != std::string_view::npos;
    EXPECT_TRUE(sameText(snippet(row, entourage ? "offline" : row.quit),
                         addAppleScriptTo("", client, true, false, record, facts)));
    if (!row.relaunch) continue;
    EXPECT_TRUE(sameText(snippet(row, entourage ? "online" : row.relaunch),
                         addAppleScriptTo("", client, false, false, record, facts)));
  }
}

TEST_F(ClientTableTest, EveryClientHasItsProgressMaximum) {
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.client);
    for (const bool automount : {false, true}) {
      record.useAutomount = automount;
      assemble({.clients = {row.client}, .backupAddressBook = row.withAddressBook});
      EXPECT_EQ(record.progressMaximum, row.progressMaximum + (automount ? 4 : 1));
    }
  }
}

TEST_F(ClientTableTest, TwoClientsHaveTwoSectionsAndOneEnd) {
  record.useAutomount = true;
  assemble({.clients = {"Postbox", "Microsoft Outlook 2011"},
            .destination = kBackupDisk,
            .language = 3,
            .relaunchClient = true,
            .numberOfBackups = 3});
  EXPECT_TRUE(sameText(readGolden("scripts/two-clients"), record.shellScript));
  EXPECT_EQ(record.progressMaximum, 7);
  ASSERT_EQ(record.manifests.size(), 2U);
  EXPECT_EQ(record.manifests[0].path, "/Users/anna/Library/Application Support/Postbox/Contents.plist");
  EXPECT_EQ(record.contentsLocation, record.manifests[1].path);
}

// By "Language" from 0 on: the folder below Documents, and the word in the archive's name.
struct Identity {
  const char* client;
  const char* folders[6];
  const char* word;
};

constexpr Identity kIdentities[] = {
    {"Microsoft Outlook 2011",
     {"Microsoft User Data/Office 2011 Identities", "Dati Utente Microsoft/Office 2011 Identities",
      "Microsoft-Benutzerdaten/Office 2011 Identities",
      "Donn\u00E9es utilisateurs Microsoft/Office 2011 Identities",
      "Microsoft User Data/Office 2011 Identities", "Datos de usuario de Microsoft/Office 2011 Identities"},
     "Outlook2011"},
    {"Microsoft Entourage 2008",
     {"Microsoft User Data/Office 2008 Identities", "Dati Utente Microsoft/Identit\u00E0 di Office 2008",
      "Microsoft-Benutzerdaten/Office 2008-Identit\u00E4ten",
      "Donn\u00E9es utilisateurs Microsoft/Identit\u00E9s Office 2008",
      "Microsoft User Data/Office 2008 Identities",
      "Datos de usuario de Microsoft/Identidades de Office 2008"},
     "Entourage2008"},
    {"Microsoft Entourage 2004",
     {"Microsoft User Data/Office 2004 Identities", "Dati Utente Microsoft/Identit\u00E0 di Office 2004",
      "Microsoft-Benutzerdaten/Office 2004-Identit\u00E4ten",
      "Donn\u00E9es utilisateurs Microsoft/Utilisateurs Office 2004",
      "Microsoft User Data/Office 2004 Identities",
      "Datos de usuario de Microsoft/Identidades de Office 2004"},
     "Entourage2004"},
    {"Microsoft Entourage v.X",
     {"Microsoft User Data/Office X Identities", "Dati Utente Microsoft/Identit\u00E0 di Office X",
      "Microsoft-Benutzerdaten/Office X-Identit\u00E4ten",
      "Donn\u00E9es utilisateurs Microsoft/Utilisateurs Office X", "Microsoft User Data/Office X Identities",
      "Datos de usuario de Microsoft/Identidades de Office X"},
     "EntouragevX"},
};

TEST_F(ClientTableTest, LanguageChoosesFolderAndNameOfTheMicrosoftClients) {
  record.filenameTemplate = "(Email Client).qvb";
  constexpr const char* kSuffixes[] = {"", "-it", "-de", "-fr", "-du", "-es"};
  for (const auto& identity : kIdentities) {
    for (std::int32_t language = 0; language < 6; ++language) {
      SCOPED_TRACE(testing::Message() << identity.client << " in language " << language);
      const std::string folder = std::string("/Users/anna/Documents/") + identity.folders[language];
      const std::string name = std::string(identity.word) + kSuffixes[language] + ".qvb";
      const auto& script =
          assemble({.clients = {identity.client}, .destination = "/Disk", .language = language});
      EXPECT_NE(script.find("--rsrc \"" + folder + "\" \"/Disk/corvane.qvb\"\n"), std::string::npos);
      EXPECT_NE(script.find("mv \"/Disk/corvane.qvb\" \"/Disk/" + name + "\"\n"), std::string::npos);
      EXPECT_EQ(record.contentsLocation, folder + "/Contents.plist");
    }
  }
}

TEST_F(ClientTableTest, AnUnknownLanguageLeavesFolderAndNameAsTheyWere) {
  for (const auto& identity : kIdentities) {
    for (const std::int32_t language : {6, -1}) {
      SCOPED_TRACE(testing::Message() << identity.client << " in language " << language);
      record.microsoftSourceFolder = "/held before";
      const auto& script =
          assemble({.clients = {identity.client}, .destination = "/Disk", .language = language});
      EXPECT_NE(script.find("--rsrc \"/held before\" \"/Disk/corvane.qvb\"\n"), std::string::npos);
      EXPECT_NE(script.find("\"/Disk/Studio-anna-(Email Client)-`date"), std::string::npos);
    }
  }
}

TEST_F(ClientTableTest, WithoutAFolderNoManifestIsWritten) {
  const auto& script = assemble({.clients = {"Microsoft Outlook 2011"}, .language = 6});
  EXPECT_NE(script.find("--rsrc \"\" \"/corvane.qvb\"\n"), std::string::npos);
  EXPECT_TRUE(record.manifests.empty());
  EXPECT_EQ(record.contentsLocation, "");
}

}  // namespace
}  // namespace corvane
