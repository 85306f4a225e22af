// The parts of the command: what it reads, what it looks for, and how it turns the machine off.
#include <gmock/gmock.h>

#include "tests/support/ScratchFolder.h"
#include "tools/osascript/Applications.h"
#include "tools/osascript/DesktopEntry.h"
#include "tools/osascript/PowerOff.h"
#include "tools/osascript/Script.h"

namespace corvane::osascript {
namespace {

using testing::ElementsAre;
using testing::FieldsAre;

TEST(ScriptTest, UnderstandsItsSentences) {
  const Script script = parseScript(
      " \t\n\r\n"
      "TELL\tApplication\"A b\"  To   QUIT \r\n"
      "tell application \"a\\\"b\\\\c\"\r\tset working offline to true\r\n\nset working offline to false\n"
      "\tshut  down \nEnd  Tell\n"
      "tell application \"B\"\nend tell\n"
      "tell application \"Finder\" to activate");
  EXPECT_FALSE(script.problem);
  // Where each begins and ends, counted from the beginning of the script.
  EXPECT_THAT(script.statements, ElementsAre(FieldsAre("A b", Action::quit, Range{33, 37}),
                                             FieldsAre("a\"b\\c", Action::workOffline, Range{68, 95}),
                                             FieldsAre("a\"b\\c", Action::workOnline, Range{98, 126}),
                                             FieldsAre("a\"b\\c", Action::shutDown, Range{128, 138}),
                                             FieldsAre("Finder", Action::activate, Range{209, 217})));
}

TEST(ScriptTest, RefusesTheRestAndSaysWhere) {
  const std::string start = "tell application \"A\"\n";  // 21 bytes
  const std::pair<std::string, Range> scripts[] = {
      {"quit", {0, 4}},
      {"tell application A to quit", {0, 4}},
      {"tëll application \"A\" to quit", {1, 2}},
      {"tell application \"A\" quit", {21, 25}},
      {"tell application \"A\" to set working offline to maybe", {24, 52}},
      {"tell application \"A\" to \"quit\"", {24, 30}},
      {"tell application \"A\" to quit quit", {24, 33}},
      {"tell application \"A\\\"", {17, 21}},
      {"tell application \"" + std::string(1'000'000, 'x'), {17, 1'000'018}},
      {"tell application \"A\\n\" to quit", {19, 21}},
      {start + "quit", {25, 25}},
      {start + "tell application \"B\"\nquit\nend tell\nend tell", {21, 41}}};
  for (const auto& [source, range] : scripts) {
    const Script script = parseScript(source);
    ASSERT_TRUE(script.problem) << source.substr(0, 100);
    EXPECT_EQ(script.problem->range, range) << source.substr(0, 100);
  }
}

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
  const std::string tooLong = "Comment=" + std::string(1'000'000, 'x');
  for (const std::string lines : {"Hidden=true", "Terminal=true", "Type=Link", "Exec=no-such-tool",
                                  "TryExec=no-such-tool", "Exec=tool \"open", tooLong.c_str()}) {
    addEntry("home/mail", "Name=Mail\n" + lines);
    EXPECT_EQ(found("Mail"), "") << lines.substr(0, 100);
  }
}

// Only stand-ins are in reach: the function looks nowhere but in the folders that it is given.
TEST(PowerOffTest, AsksTheFirstManagerThatAccepts) {
  constexpr const char* kBoth = "systemctl --no-ask-password poweroff\nloginctl --no-ask-password poweroff\n";
  // The status with which a manager ends; empty when it is not there.
  const struct {
    const char *systemctl, *loginctl, *calls, *problem;
  } machines[] = {{"", "", "", "the system has no session manager"},
                  {"0", "0", "systemctl --no-ask-password poweroff\n", ""},
                  {"", "0", "loginctl --no-ask-password poweroff\n", ""},
                  {"1", "0", kBoth, ""},
                  {"1", "4", kBoth, "loginctl: Access denied"}};
  for (const auto& machine : machines) {
    const ScratchFolder scratch;
    const auto add = [&](const std::string& name, const std::string& status) {
      if (status.empty()) return;
      scratch.writeScript("bin/" + name, "echo " + name + " \"$@\" >>" + scratch.path("calls") +
                                             "\necho Access denied\necho more\nexit " + status + "\n");
    };
    add("systemctl", machine.systemctl);
    add("loginctl", machine.loginctl);
    EXPECT_EQ(powerOff({scratch.path(), scratch.path("bin")}), machine.problem);
    EXPECT_EQ(scratch.read("calls"), machine.calls);
  }
}

}  // namespace
}  // namespace corvane::osascript
