#include "app/Leftovers.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include "process/RunTool.h"
#include "tests/support/StandardError.h"

namespace corvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(Leftovers, AreTheNamesAtWhichTheScriptWorks) {
  RunRecord record;
  record.useAutomount = true;
  record.copiedArchives = {"host-`date +%d`-`/bin/date`-Mail.qvb", "plain.qvb", "`date`.qvb", "a/b", ".."};
  record.manifests = {{.path = "/home/anna/Library/Thunderbird/Contents.plist"}};
  std::vector<std::string> names;
  for (const auto& work : workNames(record, "/Volumes/Disk", "/support/.corvane.sh"))
    names.push_back(work.folder + "/" + work.prefix +
                    (work.between == Between::nothing ? "" : "*" + work.suffix));
  EXPECT_THAT(names, ElementsAre("/tmp/.QVB_Backup", "/tmp/corvane.qvb", "/tmp/.ditto-*",
                                 "/tmp/.corvane-owner-*", "/tmp/corvane-mount.*",
                                 "/support/.corvane.sh.new-*", "/tmp/host-*-Mail.qvb", "/tmp/plain.qvb",
                                 "/tmp/*.qvb", "/home/anna/Library/Thunderbird/Contents.plist.new-*"));
  record.useAutomount = false;
  EXPECT_EQ(workNames(record, "/Volumes/Disk", "/support/.corvane.sh").front().folder, "/Volumes/Disk");
}

[[nodiscard]] std::vector<WorkName> namesIn(const std::string& folder) {
  return {{folder, "stage", "", Between::nothing, EntryKind::folder},
          {folder, "work"},
          {folder, "temp-", "", Between::sixteenDigits, EntryKind::file, false},
          {folder, "note.", "", Between::sixCharacters, EntryKind::file, false},
          {folder, "host-", "-Mail.qvb", Between::date},
          {folder, "", ".qvb", Between::dateAlone}};
}

TEST(Leftovers, AreRemovedAndNothingElseIs) {
  const ScratchFolder folder;
  const StandardError errors;
  for (const char* name :
       {"stage/Mail/Mail.zip", "work", "temp-0123456789abcdef", "note.aB3xYz", "host-09Mär2026-Mail.qvb",
        "host-Mail.qvb", "work2", "temp-1", "note.bak", "host-a.b-Mail.qvb", "09nov.2026.qvb"}) {
    folder.write(name, "mail");
  }
  EXPECT_FALSE(clearLeftovers(namesIn(folder.path()), false)) << "another run may be at work";
  EXPECT_EQ(folder.list().size(), 11U);
  EXPECT_TRUE(clearLeftovers(namesIn(folder.path()), true));
  EXPECT_THAT(folder.list(), ElementsAre("09nov.2026.qvb", "host-Mail.qvb", "host-a.b-Mail.qvb", "note.bak",
                                         "temp-1", "work2"));
  EXPECT_THAT(errors.text(),
              HasSubstr("] Removing what an earlier backup left behind: " + folder.path("work")));
}

// What stands in the way is left as it was, with what it leads to.
TEST(Leftovers, NamesThatAreTakenEndTheRun) {
  const struct {
    const char *name, *commands, *cause;  // make "$0"
  } rows[] = {{"stage", "ln -s precious \"$0\"", "it is a link"},
              {"work", "ln -s nowhere \"$0\"", "it is a link"},
              {"host- 1月-Mail.qvb", "ln -s precious \"$0\"", "it is a link"},
              {"09nov.2026.qvb", "ln -s precious \"$0\"", "it is a link"},
              {"stage", ": >\"$0\"", "something else has its name"},
              {"work", "mkdir \"$0\"", "something else has its name"},
              {"stage", "mkdir \"$0\" && chown 65534 \"$0\"", "it belongs to another user"}};
  for (const auto& [name, commands, cause] : rows) {
    const ScratchFolder at;
    const std::string path = at.path(name);
    at.write("precious/mail", "mail");
    if (runTool({"/bin/sh", "-c", commands, path}).status != 0 && ::geteuid() != 0) continue;
    const StandardError errors;
    EXPECT_FALSE(clearLeftovers(namesIn(at.path()), true));
    EXPECT_THAT(errors.text(), HasSubstr("cannot use " + path + ": " + cause));
    logIntruders(namesIn(at.path()));
    EXPECT_THAT(errors.text(), HasSubstr("cannot trust " + path));
    EXPECT_THAT(at.list(), testing::Contains(name));
    EXPECT_EQ(at.read("precious/mail"), "mail");
  }
}

}  // namespace
}  // namespace corvane
