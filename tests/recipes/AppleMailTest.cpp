#include "recipes/AppleMail.h"

#include <gtest/gtest.h>

#include "recipes/ClientTable.h"
#include "tests/support/Golden.h"
#include "tests/support/ScriptFixtures.h"

namespace corvane {
namespace {

constexpr const char* kContents = "/Users/anna/Library/Application Support/Quillon/Corvane/Contents.plist";
constexpr const char* kDownloads = "/Users/anna/Library/Mail Downloads";

class AppleMailTest : public testing::Test {
 protected:
  AppleMailTest() { record.currentFilename = "Studio-(Email Client)-`date +%d%b%Y`.qvb"; }

  std::string section(bool relaunch = false, const std::string& destination = kBackupDisk) {
    const Client* client = findClient(clientTable(), "Apple Mail", false);
    return shellScriptForMail({record, facts, host, *client, relaunch}, "so far\n", destination);
  }

  RunRecord record = defaultRecord();
  Facts facts = annasFacts();
  FakeScriptHost host;
};

TEST_F(AppleMailTest, SectionsAreByteForByteTheGoldenOnes) {
  const struct {
    double appKitVersion;
    bool attachments;
    const char* golden;
  } rows[] = {{1187, true, "current"},     {1139, false, "current"},       {1138.9, true, "attachments"},
              {1138, true, "attachments"}, {1138.9, false, "preferences"}, {824, false, "preferences"}};
  for (const auto& row : rows) {
    for (const auto& [relaunch, automount] :
         {std::pair{false, false}, {false, true}, {true, false}, {true, true}}) {
      facts.appKitVersion = row.appKitVersion;
      host.filled = {row.attachments ? kDownloads : "/Users/anna/Library/Mail"};
      record.useAutomount = automount;
      const auto golden = readGolden(std::string("mail/") + row.golden + (relaunch ? "-relaunch" : ""),
                                     {{"{base}", automount ? "/tmp" : kBackupDisk},
                                      {"{contents}", kContents},
                                      {"{library}", "/Users/anna/Library"},
                                      {"{name}", "Studio-Mail-`date +%d%b%Y`.qvb"}});
      EXPECT_TRUE(sameText("so far\n" + golden, section(relaunch)))
          << row.appKitVersion << ", relaunch " << relaunch << ", automount " << automount;
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
