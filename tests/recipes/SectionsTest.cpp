// The sections of every client but Apple Mail, through the client table as script assembly reaches them.

#include <gtest/gtest.h>

#include "recipes/ClientTable.h"
#include "tests/support/Golden.h"
#include "tests/support/ScriptFixtures.h"

namespace corvane {
namespace {

constexpr const char* kSupport = "/Users/anna/Library/Application Support/Quillon/Corvane";
constexpr const char* kIdentity = "/Users/anna/Documents/Données utilisateurs Microsoft/Office";

struct Section {
  const char* client;
  const char* golden;
  const char* fileName;
  std::string manifestFolder;
  std::string folder;  ///< the one folder that holds everything, if there is one
};

const Section kSections[] = {
    {"Microsoft Outlook 2011", "microsoft/outlook", "Studio-(Email Client).qvb", kIdentity, kIdentity},
    {"Microsoft Entourage 2008", "microsoft/entourage", "Studio-(Email Client).qvb", kIdentity, kIdentity},
    {"Microsoft Entourage 2004", "microsoft/entourage", "Studio-(Email Client).qvb", kIdentity, kIdentity},
    {"Microsoft Entourage v.X", "microsoft/entourage", "Studio-(Email Client).qvb", kIdentity, kIdentity},
    {"Thunderbird", "single-folder/thunderbird", "Studio-Thunderbird.qvb", "/Users/anna/Library/Thunderbird",
     "/Users/anna/Library/Thunderbird"},
    {"Eudora 8", "single-folder/eudora-8", "Studio-Eudora8.qvb", "/Users/anna/Library/Thunderbird",
     "/Users/anna/Library/Thunderbird"},
    {"Postbox", "single-folder/postbox", "Studio-Postbox.qvb",
     "/Users/anna/Library/Application Support/Postbox", "/Users/anna/Library/Application Support/Postbox"},
    {"Eudora", "single-folder/eudora", "Studio-Eudora.qvb", "/Users/anna/Documents/Eudora Folder",
     "/Users/anna/Documents/Eudora Folder"},
    {"GyazMail", "mail-and-preferences/gyazmail", "Studio-GyazMail.qvb", kSupport, ""},
    {"Mailsmith", "mail-and-preferences/mailsmith", "Studio-Mailsmith.qvb", kSupport, ""},
};

class SectionsTest : public testing::TestWithParam<Section> {
 protected:
  SectionsTest() {
    record.currentFilename = "Studio-(Email Client).qvb";
    record.microsoftSourceFolder = kIdentity;
  }

  std::string section() {
    const Client* client = findClient(clientTable(), GetParam().client, false);
    return client->recipe({record, facts, host, *client}, "so far\n", kBackupDisk);
  }

  static std::string golden(const std::string& base) {
    return "so far\n" +
           readGolden(GetParam().golden, {{"{base}", base},
                                          {"{identity}", kIdentity},
                                          {"{library}", "/Users/anna/Library"},
                                          {"{support}", "/Users/anna/Library/Application Support"},
                                          {"{documents}", "/Users/anna/Documents"},
                                          {"{home}", "/Users/anna"},
                                          {"{contents}", std::string(kSupport) + "/Contents.plist"},
                                          {"{name}", GetParam().fileName}});
  }

  RunRecord record = defaultRecord();
  Facts facts = annasFacts();
  FakeScriptHost host;
};

TEST_P(SectionsTest, IsByteForByteTheGoldenOne) {
  EXPECT_TRUE(sameText(golden(kBackupDisk), section()));
  record.useAutomount = true;
  EXPECT_TRUE(sameText(golden("/tmp"), section()));
}

TEST_P(SectionsTest, RecordsWhatTheRestOfTheRunNeeds) {
  record.language = 3;
  record.mailTempFolder = "kept";
  record.mailSizeTempFolder = "kept";
  (void)section();
  EXPECT_EQ(record.currentFilename, GetParam().fileName);
  EXPECT_EQ(record.finalFileName, GetParam().fileName);
  EXPECT_EQ(record.contentsLocation, GetParam().manifestFolder + "/Contents.plist");
  ASSERT_EQ(record.manifests.size(), 1U);
  EXPECT_EQ(record.manifests[0].path, record.contentsLocation);
  EXPECT_EQ(record.manifests[0].client, GetParam().client);
  EXPECT_EQ(record.manifests[0].language, 3);
  EXPECT_EQ(record.manifests[0].date.day, 5);

  const bool staged = GetParam().folder.empty();
  EXPECT_EQ(record.emailTempDirectoryPath, staged ? "/Volumes/Backup Disk/.QVB_Backup" : "");
  EXPECT_EQ(record.tempFolderStore.value_or(""), record.emailTempDirectoryPath);
  EXPECT_EQ(record.mailTempFolder, "kept");
  EXPECT_EQ(record.mailSizeTempFolder, "kept");
}

using OneFolderTest = SectionsTest;

TEST_P(OneFolderTest, ArchivesWhatAnAliasStandsFor) {
  const std::string stored = GetParam().folder;
  const std::string original = "/Volumes/Data/Mail of {base}";
  host.originals = {{stored, original}};
  std::string expected = golden(kBackupDisk);
  expected.replace(expected.find(stored), stored.size(), original);
  EXPECT_TRUE(sameText(expected, section()));
  EXPECT_EQ(record.contentsLocation, stored + "/Contents.plist");  // written through the alias
}

TEST_P(OneFolderTest, ArchivesTheFolderItselfWhenItIsNoAlias) {
  host.originals = {{GetParam().folder, GetParam().folder}};
  EXPECT_TRUE(sameText(golden(kBackupDisk), section()));
}

constexpr std::size_t kOneFolderSections = 8;  // the first ones

INSTANTIATE_TEST_SUITE_P(Clients, SectionsTest, testing::ValuesIn(kSections));
INSTANTIATE_TEST_SUITE_P(Clients, OneFolderTest,
                         testing::ValuesIn(kSections, kSections + kOneFolderSections));

}  // namespace
}  // namespace corvane
