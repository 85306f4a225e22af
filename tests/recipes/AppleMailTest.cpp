#include "recipes/AppleMail.h"

#include <gtest/gtest.h>

#include "recipes/ClientTable.h"
#include "tests/support/Golden.h"
#include "tests/support/ScriptFixtures.h"

namespace corvane {
namespace {

constexpr const char* kContents = "/Users/anna/Library/Application Support/Quillon/Corvane/Contents.plist";
constexpr const char* kName = "Studio-(Email Client)-`date +%d%b%Y`.qvb";
constexpr const char* kDownloads = "/Users/anna/Library/Mail Downloads";

class AppleMailTest : public testing::Test {
 protected:
  AppleMailTest() { record.currentFilename = kName; }

  std::string section(bool relaunch = false, const std::string& destination = kBackupDisk) {
    const Client* client = findClient(clientTable(), "Apple Mail", withAddressBook);
    return client->recipe({record, facts, host, *client, relaunch}, "so far\n", destination);
  }

  RunRecord record = defaultRecord();
  Facts facts = annasFacts();
  FakeScriptHost host;
  bool withAddressBook = false;
};

TEST_F(AppleMailTest, SectionsAreByteForByteTheGoldenOnes) {
  const struct {
    double appKitVersion;
    bool attachments;
    const char* golden;
    bool withAddressBook = false;
  } rows[] = {{1187, true, "mail/current"},
              {1139, false, "mail/current"},
              {1138.9, true, "mail/attachments"},
              {1138, true, "mail/attachments"},
              {1138.9, false, "mail/preferences"},
              {824, false, "mail/preferences"},
              {1138, true, "mail-and-book/current", true},
              {1039, false, "mail-and-book/current", true},
              {1038.9, true, "mail-and-book/attachments", true},
              {1038, false, "mail-and-book/preferences", true}};
  for (const auto& row : rows) {
    for (const auto& [relaunch, automount] :
         {std::pair{false, false}, {false, true}, {true, false}, {true, true}}) {
      facts.appKitVersion = row.appKitVersion;
      withAddressBook = row.withAddressBook;
      record.currentFilename = kName;
      host.filled = {row.attachments ? kDownloads : "/Users/anna/Library/Mail"};
      record.useAutomount = automount;
      const auto golden = readGolden(row.golden + std::string(relaunch ? "-relaunch" : ""),
                                     {{"{base}", automount ? "/tmp" : kBackupDisk},
                                      {"{contents}", kContents},
                                      {"{library}", "/Users/anna/Library"},
                                      {"{support}", "/Users/anna/Library/Application Support"},
                                      {"{name}", withAddressBook ? "Studio-Mail+AB-`date +%d%b%Y`.qvb"
                                                                 : "Studio-Mail-`date +%d%b%Y`.qvb"}});
      EXPECT_TRUE(sameText("so far\n" + golden, section(relaunch)))
          << row.golden << ", AppKit " << row.appKitVersion << ", relaunch " << relaunch << ", automount "
          << automount;
    }
  }
}

TEST_F(AppleMailTest, RecordsWhatTheRestOfTheRunNeeds) {
  record.language = 2;
  (void)section();
  EXPECT_EQ(record.contentsLocation, kContents);
  EXPECT_EQ(record.emailTempDirectoryPath, "/Volumes/Backup Disk/.QVB_Backup");
  EXPECT_EQ(record.tempFolderStore, "/Volumes/Backup Disk/.QVB_Backup");
  EXPECT_EQ(record.mailTempFolder, "/Volumes/Backup Disk/.QVB_Backup/Mail/");
  EXPECT_EQ(record.mailSizeTempFolder, "/Volumes/Backup Disk/.QVB_Backup/Mail");
  EXPECT_EQ(record.currentFilename, "Studio-Mail-`date +%d%b%Y`.qvb");
  EXPECT_EQ(record.finalFileName, record.currentFilename);
  ASSERT_EQ(record.manifests.size(), 1U);
  const Manifest& manifest = record.manifests[0];
  EXPECT_EQ(manifest.path, kContents);
  EXPECT_EQ(manifest.client, "Apple Mail");
  EXPECT_EQ(manifest.language, 2);
  EXPECT_EQ(manifest.date.year * 10000 + manifest.date.month * 100 + manifest.date.day, 20261105);
}

TEST_F(AppleMailTest, ManifestNamesTheAddressBookToo) {
  withAddressBook = true;
  (void)section();
  ASSERT_EQ(record.manifests.size(), 1U);
  EXPECT_EQ(record.manifests[0].path, kContents);
  EXPECT_EQ(record.manifests[0].client, "Apple Mail + Address Book");
  EXPECT_EQ(record.finalFileName, "Studio-Mail+AB-`date +%d%b%Y`.qvb");
}

TEST_F(AppleMailTest, StagesServerBackupsInTmp) {
  record.useAutomount = true;
  EXPECT_EQ(section(true).find(kBackupDisk), std::string::npos);
  EXPECT_EQ(record.tempFolderStore, "/tmp/.QVB_Backup");
  EXPECT_EQ(record.mailTempFolder, "/tmp/.QVB_Backup/Mail/");
  EXPECT_EQ(record.mailSizeTempFolder, "/tmp/.QVB_Backup");  // without the subfolder
}

TEST_F(AppleMailTest, TakesDestinationAndNameAsTheyAre) {
  record.currentFilename = "{base} $HOME.qvb";
  EXPECT_NE(section(false, "/Volumes/{name}/")
                .find(R"(mv "/Volumes/{name}//corvane.qvb" "/Volumes/{name}//{base} $HOME.qvb")"),
            std::string::npos);
  EXPECT_EQ(record.finalFileName, "{base} $HOME.qvb");
}

}  // namespace
}  // namespace corvane
