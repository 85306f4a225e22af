#include "tools/osascript/Applications.h"

#include <gmock/gmock.h>

#include "tests/support/ScratchFolder.h"
#include "tools/osascript/DesktopEntry.h"

namespace corvane::osascript {
namespace {

using Arguments = std::vector<std::string>;

TEST(DesktopEntryTest, SplitsExecWithoutAShell) {
  const std::pair<const char*, Arguments> sound[] = {
      {"run %u\t-a   b ", {"run", "-a", "b"}},
      {R"("/my app/run" "a\"b\`c\$d\\e\f" --x=%f --y%%%i "" "%U")",
       {"/my app/run", R"(a"b`c$d\e\f)", "--x=", "--y%", "", ""}},
      {R"(sh P="/h/u v" C:\\dir\ b.exe 'a "b" \$HOME; c')",
       {"sh", "P=/h/u v", R"(C:\dir b.exe)", R"(a "b" \$HOME; c)"}},
      {"run $(x) `y` ; z | w > v", {"run", "$(x)", "`y`", ";", "z", "|", "w", ">", "v"}}};
  for (const auto& [exec, arguments] : sound) EXPECT_EQ(parseExec(exec), arguments) << exec;
  for (const char* exec :
       {"", "%u", "\"\" a", "run \"a", "run 'a", "run \"a\\", "run a\\", "run %", "run %z", "run \"%\""})
    EXPECT_FALSE(parseExec(exec)) << exec;
}

TEST(DesktopEntryTest, ReadsItsOwnGroupOnly) {
  const auto entry = parseDesktopEntry(
      "Name=before\n[Desktop Entry]\r\n# Name=comment\n\nno pair\n Name = Mail \\s\\\\s\\q\\ "
      "\r\nName=second\n"
      "Name[de]=Post\nEmpty=\n[Desktop Action Compose]\nExec=compose");
  const DesktopEntry expected = {{"Name", "Mail  \\s\\q\\"}, {"Name[de]", "Post"}, {"Empty", ""}};
  EXPECT_EQ(entry, expected);
}

class ApplicationsTest : public testing::Test {
 protected:
  ApplicationsTest() {
    for (const char* program : {"tool", "mail-reader", "newsreader"})
      scratch_.writeScript(std::string("bin/") + program, "");
    scratch_.write("bin/plain-file", "");
    scratch_.makeFolder("bin/post");
  }
  /// Of two lines with the same key the first one counts, so that `lines` can differ from a sound entry.
  void addEntry(const std::string& place, const std::string& lines) const {
    const auto slash = place.find('/');
    scratch_.write(place.substr(0, slash) + "/applications" + place.substr(slash) + ".desktop",
                   "[Desktop Entry]\n" + lines + "\nType=Application\nExec=tool\n");
  }
  /// The arguments, joined by blanks, and the folder; empty when there is no such application.
  [[nodiscard]] std::string found(const std::string& name) const {
    const auto application =
        findApplication(name, {"XDG_DATA_HOME=" + scratch_.path("home"),
                               "XDG_DATA_DIRS=relative:" + scratch_.path("absent:") + scratch_.path("system"),
                               "PATH=:relative:" + bin_});
    if (!application) return "";
    const auto& arguments = application->command.arguments;
    const auto slash = arguments.front().find_last_of('/');
    EXPECT_EQ(application->command.program, bin_ + "/" + arguments.front().substr(slash + 1));
    std::string text;
    for (const auto& argument : arguments) text += argument + " ";
    return text + application->folder;
  }

  const ScratchFolder scratch_;
  const std::string bin_ = scratch_.path("bin");
};

TEST_F(ApplicationsTest, FindsByEntryThenByProgram) {
  addEntry("home/a-other", "Name=Other\nStartupWMClass=Post Office\nExec=tool other");
  addEntry("home/org.example.Post", "Name=Post Office\nStartupWMClass=post-window\nExec=tool post %u");
  addEntry("home/sub/nested", "Name=In Folder\nPath=/usr\nExec=" + bin_ + "/tool nested");
  addEntry("home/own", "Name=Own");
  addEntry("system/own", "Name=Own\nExec=tool system");
  const std::pair<const char*, std::string> lookups[] = {{"post office", "tool post "},
                                                         {"POST-WINDOW", "tool post "},
                                                         {"org.example.post", "tool post "},
                                                         {"In Folder", bin_ + "/tool nested /usr"},
                                                         {"Own", "tool "},
                                                         {"Mail Reader", "mail-reader "},
                                                         {"News Reader", "newsreader "}};
  for (const auto& [name, expected] : lookups) EXPECT_EQ(found(name), expected) << name;
  for (const char* name : {"Plain File", "Post", "../bin/tool", "", " - "})
    EXPECT_EQ(found(name), "") << name;
}

TEST_F(ApplicationsTest, AnEntryThatCannotBeStartedHidesThoseOfTheSameId) {
  addEntry("system/mail", "Name=Mail");
  EXPECT_EQ(found("Mail"), "tool ");
  for (const std::string& lines :
       {std::string("Hidden=true"), std::string("Terminal=true"), std::string("Type=Link"),
        std::string("Exec=no-such-tool"), std::string("TryExec=no-such-tool"),
        std::string("Exec=tool \"open"), "Comment=" + std::string(1'000'000, 'x')}) {
    addEntry("home/mail", "Name=Mail\n" + lines);
    EXPECT_EQ(found("Mail"), "") << lines.substr(0, 100);
  }
}

}  // namespace
}  // namespace corvane::osascript
