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
      const bool offline = !quit && contains(row.client, "Entourage");
      for (const bool isHeader : {true, false}) {
        const std::string name = isHeader  ? (offline ? "offline" : row.quit)
                                 : offline ? "online"
                                           : row.relaunch;
        EXPECT_EQ(addAppleScriptTo("so far\n", client, isHeader, false, {quit, 0}),
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

// The sections of every client, through the client table as script assembly reaches them.

// Braces of the user's own are no placeholders.
const std::string kDisk = "/Volumes/Backup {name}";
const std::string kName = "{folder}{contents} $HOME-";
const std::string kLibrary = "/Users/anna/Library";
const std::string kContents = "/Users/anna/Library/Application Support/Quillon/Corvane/Contents.plist";
constexpr const char* kIdentity = "/Users/anna/Documents/Données utilisateurs Microsoft/Office";
constexpr const char* kProfiles = "/Users/anna/Library/Thunderbird";

struct Section {
  const char* client;
  const char* golden;
  const char* word;         // of the client in the archive's name
  const char* folder = "";  // the one folder that holds everything, if there is one
  bool withAddressBook = false;
};

constexpr Section kSections[] = {
    {"Microsoft Outlook 2011", "microsoft/outlook", "(Email Client)", kIdentity},
    {"Microsoft Entourage 2008", "microsoft/entourage", "(Email Client)", kIdentity},
    {"Microsoft Entourage 2004", "microsoft/entourage", "(Email Client)", kIdentity},
    {"Microsoft Entourage v.X", "microsoft/entourage", "(Email Client)", kIdentity},
    {"Thunderbird", "single-folder/thunderbird", "Thunderbird", kProfiles},
    {"Eudora 8", "single-folder/eudora-8", "Eudora8", kProfiles},
    {"Postbox", "single-folder/postbox", "Postbox", "/Users/anna/Library/Application Support/Postbox"},
    {"Eudora", "single-folder/eudora", "Eudora", "/Users/anna/Documents/Eudora Folder"},
    {"GyazMail", "mail-and-preferences/gyazmail", "GyazMail"},
    {"Mailsmith", "mail-and-preferences/mailsmith", "Mailsmith"},
    {"Apple Mail", "mail/current", "Mail"},
    {"Apple Mail", "mail-and-book/current", "Mail+AB", "", true},
};

class SectionsTest : public ScriptTest {
 protected:
  std::string section(const Section& row, bool relaunch = false) {
    record.currentFilename = kName + "(Email Client).qvb";
    record.microsoftSourceFolder = kIdentity;
    record.manifests.clear();
    const Client* client = findClient(clientTable(), row.client, row.withAddressBook);
    return client->recipe({record, facts, host, *client, relaunch}, "so far\n", kDisk);
  }

  [[nodiscard]] std::string golden(const Section& row, const std::string& file) const {
    return "so far\n" + readGolden(file, {{"{identity}", kIdentity},
                                          {"{support}", kLibrary + "/Application Support"},
                                          {"{library}", kLibrary},
                                          {"{documents}", "/Users/anna/Documents"},
                                          {"{home}", "/Users/anna"},
                                          {"{contents}", kContents},
                                          {"{name}", kName + row.word + ".qvb"},
                                          {"{base}", record.useAutomount ? "/tmp" : kDisk}});
  }
};

TEST_F(SectionsTest, AreByteForByteTheGoldenOnes) {
  for (const auto& row : kSections) {
    for (const bool automount : {false, true}) {
      record.useAutomount = automount;
      EXPECT_EQ(section(row), golden(row, row.golden)) << automount;
    }
  }
}

TEST_F(SectionsTest, RecordWhatTheRestOfTheRunNeeds) {
  record.language = 3;
  for (const auto& row : kSections) {
    SCOPED_TRACE(row.golden);
    const bool staged = *row.folder == '\0';
    record.emailTempDirectoryPath = record.mailTempFolder = record.mailSizeTempFolder = "";
    record.tempFolderStore.reset();
    (void)section(row);
    EXPECT_EQ(record.currentFilename, kName + row.word + ".qvb");
    EXPECT_EQ(record.finalFileName, record.currentFilename);
    EXPECT_EQ(record.contentsLocation, staged ? kContents : std::string(row.folder) + "/Contents.plist");
    ASSERT_EQ(record.manifests.size(), 1U);
    const Manifest& manifest = record.manifests[0];
    EXPECT_EQ(manifest.path, record.contentsLocation);
    EXPECT_EQ(manifest.client, row.withAddressBook ? "Apple Mail + Address Book" : row.client);
    EXPECT_EQ(manifest.language, 3);
    const std::string staging = staged ? kDisk + "/.QVB_Backup" : "";
    EXPECT_EQ(record.emailTempDirectoryPath, staging);
    EXPECT_EQ(record.tempFolderStore.value_or(""), staging);
    const bool isMail = std::string_view(row.client) == "Apple Mail";
    EXPECT_EQ(record.mailTempFolder, isMail ? staging + "/Mail/" : "");
    EXPECT_EQ(record.mailSizeTempFolder, isMail ? staging + "/Mail" : "");
  }
  record.useAutomount = true;
  (void)section({"Apple Mail", "", ""});
  EXPECT_EQ(record.mailTempFolder, "/tmp/.QVB_Backup/Mail/");
  EXPECT_EQ(record.mailSizeTempFolder, "/tmp/.QVB_Backup");  // without the subfolder
}

TEST_F(SectionsTest, ArchiveWhatAnAliasStandsFor) {
  for (const auto& row : kSections) {
    const std::string stored = row.folder;
    if (stored.empty()) continue;
    const std::string original = "/Volumes/Data/Mail of {base}";
    host.originals = {{stored, original}};
    std::string expected = golden(row, row.golden);
    expected.replace(expected.find(stored), stored.size(), original);
    EXPECT_EQ(section(row), expected);
    EXPECT_EQ(record.contentsLocation, stored + "/Contents.plist");  // written through the alias
  }
}

TEST_F(SectionsTest, AppleMailOfOlderSystemsHasMoreFolders) {
  const struct {
    double appKitVersion;
    bool attachments;
    std::string golden;
    bool withAddressBook = false;
  } rows[] = {{1187, true, "mail/current"},
              {1139, false, "mail/current"},
              {1138.9, true, "mail/attachments"},
              {1138, false, "mail/preferences"},
              {1039, true, "mail-and-book/current", true},
              {1038.9, true, "mail-and-book/attachments", true},
              {1038, false, "mail-and-book/preferences", true}};
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.golden << ", AppKit " << row.appKitVersion);
    facts.appKitVersion = row.appKitVersion;
    host.filled = {kLibrary + (row.attachments ? "/Mail Downloads" : "/Mail")};
    const Section mail{"Apple Mail", "", row.withAddressBook ? "Mail+AB" : "Mail", "", row.withAddressBook};
    EXPECT_EQ(section(mail), golden(mail, row.golden));
    EXPECT_EQ(section(mail, true), golden(mail, row.golden + "-relaunch"));
  }
}

}  // namespace
}  // namespace corvane
