#include "app/Leftovers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>
#include <functional>

#include "tests/support/ScratchFolder.h"
#include "tests/support/StandardError.h"

namespace corvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(Leftovers, AreTheNamesAtWhichTheScriptWorks) {
  RunRecord record;
  record.useAutomount = true;
  record.copiedArchives = {"host-`date +%d`-`date +%H`-Mail.qvb", "plain.qvb", "`date +%d`.qvb", "`date`"};
  record.manifests = {{.path = "/home/anna/Library/Thunderbird/Contents.plist"}};
  std::vector<std::string> names;
  for (const auto& work : workNames(record, "/Volumes/Disk", "/support/")) {
    names.push_back(work.folder + "/" + work.prefix +
                    (work.between == Between::nothing ? "" : "*" + work.suffix));
  }
  EXPECT_THAT(names, ElementsAre("/tmp/.QVB_Backup", "/tmp/corvane.qvb", "/tmp/.ditto-*",
                                 "/support/.corvane.sh.*", "/tmp/host-*-Mail.qvb", "/tmp/plain.qvb",
                                 "/home/anna/Library/Thunderbird/Contents.plist.*"));
  record.useAutomount = false;
  EXPECT_EQ(workNames(record, "/Volumes/Disk", "/support/").front().folder, "/Volumes/Disk");
}

[[nodiscard]] bool clear(const std::string& folder, bool isAlone = true) {
  return clearLeftovers({{folder, "stage", "", Between::nothing, EntryKind::folder},
                         {folder, "work"},
                         {folder, "temp-", "", Between::sixteenDigits, EntryKind::file, false},
                         {folder, "note.", "", Between::sixCharacters, EntryKind::file, false},
                         {folder, "host-", "-Mail.qvb", Between::date}},
                        isAlone);
}

TEST(Leftovers, AreRemovedAndNothingElseIs) {
  const ScratchFolder folder;
  const StandardError errors;
  for (const char* name :
       {"stage/Mail/Mail.zip", "work", "temp-0123456789abcdef", "note.aB3xYz", "host-09-Mail.qvb",
        "host-Mail.qvb", "work2", "temp-1", "note.bak", "host-a.b-Mail.qvb"}) {
    folder.write(name, "mail");
  }
  EXPECT_FALSE(clear(folder.path(), false)) << "another run may be at work";
  EXPECT_EQ(folder.list().size(), 10U);
  EXPECT_TRUE(clear(folder.path()));
  EXPECT_THAT(folder.list(),
              ElementsAre("host-Mail.qvb", "host-a.b-Mail.qvb", "note.bak", "temp-1", "work2"));
  EXPECT_THAT(errors.text(),
              HasSubstr("] Removing what an earlier backup left behind: " + folder.path("work")));
}

// What stands in the way is left as it was, with what it leads to.
TEST(Leftovers, NamesThatAreTakenEndTheRun) {
  struct Taken {
    std::function<void(const ScratchFolder&)> take;
    std::string name;
    const char* cause;
  };
  const auto linkTo = [](const char* target, const char* name) {
    return [=](const ScratchFolder& at) {
      ASSERT_EQ(::symlink(at.path(target).c_str(), at.path(name).c_str()), 0);
    };
  };
  const auto give = [](const std::string& path) { ASSERT_EQ(::lchown(path.c_str(), 65534, 65534), 0); };
  std::vector<Taken> cases{
      {linkTo("precious", "stage"), "stage", "it is a link"},
      {linkTo("nowhere", "work"), "work", "it is a link"},
      {linkTo("precious", "host-1-Mail.qvb"), "host-1-Mail.qvb", "it is a link"},
      {[](const ScratchFolder& at) { at.write("stage", ""); }, "stage", "something else has its name"},
      {[](const ScratchFolder& at) { at.makeFolder("work"); }, "work", "something else has its name"}};
  if (::geteuid() == 0) {
    cases.push_back({[=](const ScratchFolder& at) { give(at.makeFolder("stage")); }, "stage",
                     "it belongs to another user"});
  }
  for (const auto& taken : cases) {
    const ScratchFolder at;
    at.write("precious/mail", "mail");
    taken.take(at);
    const StandardError errors;
    EXPECT_FALSE(clear(at.path()));
    EXPECT_THAT(errors.text(), HasSubstr("cannot use " + at.path(taken.name) + ": " + taken.cause));
    EXPECT_THAT(at.list(), testing::Contains(taken.name));
    EXPECT_EQ(at.read("precious/mail"), "mail");
  }
}

}  // namespace
}  // namespace corvane
