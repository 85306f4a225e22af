#include "script/ScriptAssembly.h"

#include <gtest/gtest.h>

#include "recipes/ClientTable.h"
#include "tests/support/Golden.h"
#include "tests/support/ScriptFixtures.h"

namespace corvane {
namespace {

constexpr IdentityFolders kFolders = {{{"English/Office", "Office"},
                                       {"Italian/Identità", "Office-it"},
                                       {"German/Identitäten", "Office-de"},
                                       {"French/Identités", "Office-fr"},
                                       {"Dutch/Office", "Office-du"},
                                       {"Spanish/Identidades", "Office-es"}}};

// Writes what it was given into the script.
std::string echoRecipe(const RecipeContext& context, std::string script, const std::string& destination) {
  auto& record = context.record;
  record.finalFileName = record.currentFilename;
  return script + "[" + std::string(context.client.displayName) + (context.relaunch ? " relaunch " : " ") +
         record.currentFilename + " to " + destination + "]";
}

constexpr Client kTwoClients[] = {
    {.displayName = "Thunderbird",
     .rotationTag = "Thunderbird",
     .progressMaximum = 3,
     .recipe = echoRecipe,
     .processPattern = "Thunderbird",
     .application = "Thunderbird",
     .relaunch = "\tosascript -e 'tell application \"Thunderbird\"' -e \"activate\" -e 'end tell'\n\n"},
    {.displayName = "Office",
     .rotationTag = "Office",
     .progressMaximum = 4,
     .recipe = echoRecipe,
     .quitForm = QuitForm::microsoft,
     .canGoOffline = true,
     .identityFolders = &kFolders},
};

class ScriptAssemblyTest : public testing::Test {
 protected:
  std::string assemble(const ScriptOptions& options, ClientTable table = clientTable()) {
    ScriptAssembly(record, facts, table, host).assemble(options);
    return record.shellScript;
  }

  double progressMaximumOf(const std::vector<std::string>& clients, ClientTable table = clientTable()) {
    record.progressMaximum = 50;
    assemble({.clients = clients, .destination = kBackupDisk}, table);
    return record.progressMaximum;
  }

  RunRecord record = defaultRecord();
  Facts facts = annasFacts();
  FakeScriptHost host;
};

TEST_F(ScriptAssemblyTest, WholeScriptsAreByteForByteTheGoldenOnes) {
  const struct {
    const char* golden;
    bool useAutomount;
    ScriptOptions options;
  } rows[] = {
      {"no-clients", false, {}},
      {"no-clients", true, {.relaunchClient = true, .numberOfBackups = 5}},
      {"no-clients-shutdown", false, {.shutdownOnCompletion = true}},
      {"mail", false, {.clients = {"Apple Mail"}}},
      {"mail-relaunch-rotation",
       false,
       {.clients = {"Apple Mail"}, .relaunchClient = true, .numberOfBackups = 5}},
      {"mail-server-rotation", true, {.clients = {"Apple Mail"}, .numberOfBackups = 2}},
      {"mail-server-relaunch", true, {.clients = {"Apple Mail"}, .relaunchClient = true}},
      {"two-mail-shutdown",
       false,
       {.clients = {"Apple Mail", "Apple Mail"}, .relaunchClient = true, .shutdownOnCompletion = true}},
      {"unknown-first",
       false,
       {.clients = {"Pine", "Apple Mail"}, .relaunchClient = true, .numberOfBackups = 5}},
      {"unknown-second",
       true,
       {.clients = {"Apple Mail", "apple mail"}, .relaunchClient = true, .numberOfBackups = 5}},
  };
  for (const auto& row : rows) {
    auto options = row.options;
    options.destination = kBackupDisk;
    record = defaultRecord();
    record.useAutomount = row.useAutomount;
    EXPECT_TRUE(sameText(readGolden(std::string("scripts/") + row.golden), assemble(options))) << row.golden;
  }
}

TEST_F(ScriptAssemblyTest, SectionsOfAnyClientStandBetweenItsQuitAndItsRelaunch) {
  const auto script = assemble({.clients = {"Thunderbird", "Office"},
                                .destination = kBackupDisk,
                                .backupAddressBook = true,
                                .relaunchClient = true},
                               kTwoClients);
  const std::string quit = readGolden("snippets/quit-common") + readGolden("snippets/quit-contacts");
  const std::string section =
      "[Thunderbird Studio-anna-(Email Client)-`date +%d%b%Y`.qvb to /Volumes/Backup Disk]";
  const std::string relaunch = readGolden("snippets/relaunch-common");
  const std::string start = "#!/bin/sh\necho \"Results of the Corvane:\"\nerrorCode=0\n\n";
  const std::string expected =
      start + quit + section + relaunch + "\n\n\n\techo \"Quiting email application...\"\n";
  EXPECT_TRUE(sameText(expected, script.substr(0, expected.size())));
  EXPECT_NE(script.find("[Office Studio-anna-Office-`date"), std::string::npos);
  EXPECT_EQ(host.measured, 0);
}

TEST_F(ScriptAssemblyTest, ShutdownSuppressesEveryRelaunch) {
  const auto script = assemble(
      {.clients = {"Thunderbird", "Office", "Pine"}, .relaunchClient = true, .shutdownOnCompletion = true},
      kTwoClients);
  EXPECT_EQ(script.find("Launching"), std::string::npos);
  EXPECT_EQ(script.find("Online"), std::string::npos);
}

TEST_F(ScriptAssemblyTest, KeepsAtLeastOneBackup) {
  const std::pair<std::optional<int>, const char*> cases[] = {
      {0, "\n\tmaxbackups=1\n"}, {-3, "\n\tmaxbackups=1\n"}, {5, "\n\tmaxbackups=5\n"}};
  for (const auto& [limit, line] : cases) {
    const auto script =
        assemble({.clients = {"Apple Mail"}, .destination = kBackupDisk, .numberOfBackups = limit});
    EXPECT_NE(script.find(line), std::string::npos) << *limit;
  }
}

TEST_F(ScriptAssemblyTest, ProgressMaximumIsThatOfTheLastClient) {
  EXPECT_EQ(progressMaximumOf({}), 51);
  EXPECT_EQ(progressMaximumOf({"Apple Mail"}), 8);
  EXPECT_EQ(progressMaximumOf({"Pine"}), 51);
  EXPECT_EQ(progressMaximumOf({"Apple Mail", "Pine"}), 8);
  EXPECT_EQ(progressMaximumOf({"Thunderbird", "Office"}, kTwoClients), 5);
  EXPECT_EQ(progressMaximumOf({"Office", "Thunderbird"}, kTwoClients), 4);
  record.useAutomount = true;
  EXPECT_EQ(progressMaximumOf({}), 51);
  EXPECT_EQ(progressMaximumOf({"Apple Mail"}), 11);
  EXPECT_EQ(progressMaximumOf({"Office", "Thunderbird"}, kTwoClients), 7);
  EXPECT_EQ(progressMaximumOf({"Apple Mail", "Pine"}), 14);  // an unknown name has its server copy too
}

TEST_F(ScriptAssemblyTest, LanguageChoosesTheIdentityFolder) {
  const char* none = "held before";
  const struct {
    std::int32_t language;
    std::string folder;
    const char* word;
  } rows[] = {
      {0, "/Users/anna/Documents/English/Office", "Office"},
      {1, "/Users/anna/Documents/Italian/Identità", "Office-it"},
      {2, "/Users/anna/Documents/German/Identitäten", "Office-de"},
      {3, "/Users/anna/Documents/French/Identités", "Office-fr"},
      {4, "/Users/anna/Documents/Dutch/Office", "Office-du"},
      {5, "/Users/anna/Documents/Spanish/Identidades", "Office-es"},
      {6, none, "(Email Client)"},
      {-1, none, "(Email Client)"},
      {INT32_MIN, none, "(Email Client)"},
  };
  record.filenameTemplate = "(Email Client).qvb";
  for (const auto& row : rows) {
    record.microsoftSourceFolder = none;
    const auto script = assemble({.clients = {"Office"}, .language = row.language}, kTwoClients);
    EXPECT_EQ(record.microsoftSourceFolder, row.folder);
    EXPECT_EQ(record.language, row.language);
    EXPECT_NE(script.find(std::string("[Office ") + row.word + ".qvb to "), std::string::npos)
        << row.language;
  }
}

TEST(FindClient, ComparesTheWholeNameExactly) {
  constexpr Client table[] = {{.displayName = "Eudora"},
                              {.displayName = "Eudora 8"},
                              {.displayName = "Apple Mail", .isAppleMail = true, .withAddressBook = true},
                              {.displayName = "Apple Mail", .isAppleMail = true}};
  EXPECT_EQ(findClient(table, "Eudora", false), &table[0]);
  EXPECT_EQ(findClient(table, "Eudora", true), &table[0]);
  EXPECT_EQ(findClient(table, "Eudora 8", true), &table[1]);
  EXPECT_EQ(findClient(table, "Apple Mail", true), &table[2]);
  EXPECT_EQ(findClient(table, "Apple Mail", false), &table[3]);
  for (const char* name : {"", "eudora", "Eudora ", " Eudora", "Eudora 88", "APPLE MAIL", "Apple"}) {
    EXPECT_EQ(findClient(table, name, false), nullptr) << name;
  }
}

}  // namespace
}  // namespace corvane
