#include "tools/osascript/Applications.h"

#include <gmock/gmock.h>

#include "tests/support/ScratchFolder.h"

namespace corvane::osascript {
namespace {

constexpr const char* kEntry = "[Desktop Entry]\nType=Application\n";

struct Lookup {
  const char* name;
  const char* arguments;  // joined by blanks; empty when there is no such application
};

const Lookup kLookups[] = {
    {"post office", "tool post"},
    {"POST-WINDOW", "tool post"},
    {"org.example.post", "tool post"},
    {"In Folder", "tool nested"},
    {"Own", "tool own"},
    {"Hidden", ""},
    {"Text", ""},
    {"Link", ""},
    {"Gone", ""},
    {"Not Tried", ""},
    {"Broken", ""},
    {"Huge", ""},
    {"Mail Reader", "mail-reader"},
    {"News Reader", "newsreader"},
    {"Plain File", ""},
    {"Post", ""},
    {"../bin/tool", ""},
    {"", ""},
    {" - ", ""},
    {"$(touch made)", ""},
    {"Absolute", "{bin}/tool abs"},
};

class ApplicationsTest : public testing::Test {
 protected:
  void layOut() {
    addEntry("home/a-other", "Name=Other\nStartupWMClass=Post Office\nExec=tool other");
    addEntry("home/org.example.Post", "Name=Post Office\nStartupWMClass=post-window\nExec=tool post %u");
    addEntry("home/sub/nested", "Name=In Folder\nExec=tool nested");
    addEntry("home/hidden", "Name=Hidden\nHidden=true\nExec=tool hidden");
    addEntry("home/own", "Name=Own\nExec=tool own");
    addEntry("home/text", "Name=Text\nTerminal=true\nExec=tool text");
    addEntry("home/gone", "Name=Gone\nExec=no-such-tool");
    addEntry("home/tried", "Name=Not Tried\nTryExec=no-such-tool\nExec=tool tried");
    addEntry("home/broken", "Name=Broken\nExec=tool \"broken");
    addEntry("home/huge", "Name=Huge\nExec=tool huge\nComment=" + std::string(1'000'000, 'x'));
    addEntry("home/absolute", "Name=Absolute\nExec=" + bin_ + "/tool abs");
    addEntry("system/hidden", "Name=Hidden\nExec=tool shown");
    addEntry("system/own", "Name=Own\nExec=tool system");
    scratch_.write("system/applications/link.desktop",
                   "[Desktop Entry]\nType=Link\nName=Link\nExec=tool link\n");
    for (const char* program : {"tool", "mail-reader", "newsreader"})
      scratch_.writeScript(std::string("bin/") + program, "");
    scratch_.write("bin/plain-file", "");
    scratch_.makeFolder("bin/post");
  }
  void addEntry(const std::string& place, const std::string& lines) {
    const auto slash = place.find('/');
    scratch_.write(place.substr(0, slash) + "/applications" + place.substr(slash) + ".desktop",
                   kEntry + lines + "\n");
  }
  std::vector<std::string> environment() {
    return {"XDG_DATA_HOME=" + scratch_.path("home"),
            "XDG_DATA_DIRS=relative:" + scratch_.path("absent:") + scratch_.path("system"),
            "PATH=:relative:" + bin_};
  }

  ScratchFolder scratch_;
  const std::string bin_ = scratch_.path("bin");
};

TEST_F(ApplicationsTest, FindsByEntryThenByProgram) {
  layOut();
  for (const auto& lookup : kLookups) {
    std::string arguments;
    if (const auto application = findApplication(lookup.name, environment())) {
      for (const auto& argument : application->command.arguments) arguments += argument + " ";
      arguments.pop_back();
    }
    std::string expected = lookup.arguments;
    if (expected.starts_with("{bin}")) expected.replace(0, 5, bin_);
    EXPECT_EQ(arguments, expected) << lookup.name;
  }
}

TEST_F(ApplicationsTest, StartsProgramsByTheirPathInTheFolderOfTheEntry) {
  layOut();
  addEntry("home/placed", "Name=Placed\nPath=/usr\nExec=tool");
  const auto application = findApplication("Placed", environment());
  ASSERT_TRUE(application);
  EXPECT_EQ(application->command.program, bin_ + "/tool");
  EXPECT_EQ(application->folder, "/usr");
}

}  // namespace
}  // namespace corvane::osascript
