// Every client but Apple Mail alone, backed up for real by the program without a display.
//
// The scripts look for the clients in the process list, where the words of this program's own command line
// stand too: no test here is named after a client.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "process/Files.h"
#include "process/RunTool.h"
#include "tests/system/EngineRun.h"

namespace corvane {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using Names = std::vector<std::string>;

class ClientRunTest : public testing::Test {
 protected:
  // What the script asks of `ditto` is written down.
  ClientRunTest() {
    engine.installTool("osascript", "");
    engine.installTool("ditto", "echo \"$@\" >>\"$HOME/dittoed\"\nexec " DITTO_PATH " \"$@\"\n");
    engine.nameArchives("(Email Client).qvb");
  }

  void configure(const Names& clients, const std::string& more = "") {
    std::string list;
    for (const auto& client : clients) list += "<string>" + client + "</string>";
    engine.configure("<key>Clients</key><array>" + list + "</array>" + more);
  }

  [[nodiscard]] std::string inHome(const std::string& name) const { return engine.home() + "/" + name; }

  // The folder to which an archive at the destination was unpacked.
  std::string unpack(const std::string& archive) const {
    const std::string out = inHome("unpacked " + archive);
    struct stat status {};
    EXPECT_EQ(::stat((engine.destination() + "/" + archive).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U) << archive << " is for its owner only";
    EXPECT_EQ(runTool({"/usr/bin/unzip", "-q", engine.destination() + "/" + archive, "-d", out}).status, 0);
    return out;
  }

  void expectFailure() {
    EXPECT_EQ(engine.run(), 1);
    EXPECT_THAT(engine.log(), Not(HasSubstr("Backup completed")));
    EXPECT_FALSE(fileExists(engine.support() + "/lastbackup"));
  }

  EngineRun engine;
};

// A client that keeps everything in one folder.
struct OneFolder {
  std::string client, language, folder, archive;  // the folder lies below the home folder
};

class OneFolderRunTest : public ClientRunTest, public testing::WithParamInterface<OneFolder> {};

TEST_P(OneFolderRunTest, ArchivesTheFolderBehindLinks) {
  const auto& [client, language, folder, archive] = GetParam();
  configure({client}, "<key>Language</key><integer>" + language + "</integer>");
  const std::string original = inHome("elsewhere/profiles");
  writeTestFile(original + "/Main/Inbox", "mail");
  writeTestFile(original + "/Entw\u00FCrfe", "drafts");
  makeFolders(inHome(folder.substr(0, folder.find_last_of('/'))));
  ASSERT_EQ(::symlink("elsewhere/profiles", inHome("link").c_str()), 0);
  ASSERT_EQ(::symlink(inHome("link").c_str(), inHome(folder).c_str()), 0);
  EXPECT_EQ(engine.run(), 0);
  EXPECT_THAT(readTestFile(inHome("dittoed")), HasSubstr("--rsrc " + original + " "));
  ASSERT_THAT(namesIn(engine.destination()), ElementsAre(archive));
  const std::string out = unpack(archive);
  EXPECT_THAT(readTestFile(out + "/Contents.plist"), AllOf(HasSubstr("<string>" + client + "</string>"),
                                                           HasSubstr("<integer>" + language + "</integer>")));
  EXPECT_TRUE(removeFile(out + "/Contents.plist"));
  EXPECT_EQ(runTool({"/usr/bin/diff", "-r", original, out}).output, "");
  EXPECT_TRUE(fileExists(engine.support() + "/lastbackup"));
  EXPECT_TRUE(std::filesystem::is_symlink(inHome(folder)));
}

INSTANTIATE_TEST_SUITE_P(
    Clients, OneFolderRunTest,
    testing::Values(
        OneFolder{"Microsoft Outlook 2011", "3",
                  "Documents/Donn\u00E9es utilisateurs Microsoft/Office 2011 Identities",
                  "Outlook2011-fr.qvb"},
        OneFolder{"Microsoft Entourage 2008", "1",
                  "Documents/Dati Utente Microsoft/Identit\u00E0 di Office 2008", "Entourage2008-it.qvb"},
        OneFolder{"Microsoft Entourage 2004", "2",
                  "Documents/Microsoft-Benutzerdaten/Office 2004-Identit\u00E4ten", "Entourage2004-de.qvb"},
        OneFolder{"Microsoft Entourage v.X", "5",
                  "Documents/Datos de usuario de Microsoft/Identidades de Office X", "EntouragevX-es.qvb"},
        OneFolder{"Thunderbird", "0", "Library/Thunderbird", "Thunderbird.qvb"},
        OneFolder{"Eudora 8", "0", "Library/Thunderbird", "Eudora8.qvb"},
        OneFolder{"Postbox", "0", "Library/Application Support/Postbox", "Postbox.qvb"},
        OneFolder{"Eudora", "0", "Documents/Eudora Folder", "Eudora.qvb"}),
    [](const auto& test) { return std::to_string(test.index); });

// A folder of that name keeps the manifest out, also from a user whom no permission stops.
TEST_F(ClientRunTest, AFolderThatTakesNoManifestIsArchivedWithoutOne) {
  configure({"Postbox"});
  const std::string folder = engine.library() + "/Application Support/Postbox";
  writeTestFile(folder + "/Inbox", "mail");
  writeTestFile(folder + "/Contents.plist/mine", "the user's");
  EXPECT_EQ(engine.run(), 0);
  EXPECT_THAT(engine.log(), HasSubstr("/Postbox/Contents.plist"));
  EXPECT_THAT(namesIn(unpack("Postbox.qvb")), ElementsAre("Contents.plist", "Inbox"));
  EXPECT_EQ(readTestFile(folder + "/Contents.plist/mine"), "the user's");
}

// The shell finds no end of the text that the open quote starts, and gives up there.
TEST_F(ClientRunTest, AnOpenQuoteEndsTheScriptBeforeTheRename) {
  configure({"Mailsmith", "Postbox"});
  writeTestFile(inHome("Mail/Mailsmith User Data/inbox"), "mail");
  writeTestFile(engine.library() + "/Preferences/Mailsmith Preferences", "settings");
  writeTestFile(engine.library() + "/Application Support/Postbox/inbox", "mail");
  expectFailure();
  EXPECT_THAT(engine.log(),
              AllOf(HasSubstr("] Compressing Backup files..."),
                    HasSubstr("] Cleaning up after failed Backup\n"), Not(HasSubstr("Backing up Postbox"))));
  ASSERT_THAT(namesIn(engine.destination()), ElementsAre("corvane.qvb"));
  EXPECT_THAT(namesIn(unpack("corvane.qvb")),
              ElementsAre("Contents.plist", "Mailsmith.zip", "MailsmithPrefs.zip"));
  EXPECT_FALSE(fileExists(engine.support() + "/.corvane.sh"));
}

TEST_F(ClientRunTest, OneFailingClientFailsTheRunButNotTheOthers) {
  configure({"Thunderbird", "Postbox", "Eudora"});
  writeTestFile(engine.library() + "/Thunderbird/profiles.ini", "first");
  writeTestFile(inHome("Documents/Eudora Folder/In"), "third");
  expectFailure();
  EXPECT_THAT(engine.log(), HasSubstr(": Backup failed."));
  EXPECT_THAT(namesIn(engine.destination()), ElementsAre("Eudora.qvb", "Thunderbird.qvb"));
  EXPECT_FALSE(fileExists(engine.library() + "/Application Support/Postbox"));
  // Only the last client's manifest is taken away again.
  EXPECT_THAT(namesIn(engine.library() + "/Thunderbird"), ElementsAre("Contents.plist", "profiles.ini"));
  EXPECT_THAT(namesIn(inHome("Documents/Eudora Folder")), ElementsAre("In"));
}

}  // namespace
}  // namespace corvane
