#include "tools/osascript/DesktopEntry.h"

#include <gmock/gmock.h>

namespace corvane::osascript {
namespace {

using Arguments = std::vector<std::string>;

struct ExecCase {
  const char* exec;
  std::optional<Arguments> arguments;
};

const ExecCase kExecCases[] = {
    {"thunderbird %u", Arguments{"thunderbird"}},
    {"  run\t-a   b ", Arguments{"run", "-a", "b"}},
    {"\"/opt/my app/run\" --a \"b c\"", Arguments{"/opt/my app/run", "--a", "b c"}},
    {R"(run "a\"b\`c\$d\\e\f")", Arguments{"run", R"(a"b`c$d\e\f)"}},
    {"run --x=%f --y%% %i%c%k", Arguments{"run", "--x=", "--y%"}},
    {"run \"\" %F \"%U\"", Arguments{"run", "", ""}},
    {R"(env P="/h/u v" wine C:\\dir\\a\ b.exe)", Arguments{"env", "P=/h/u v", "wine", R"(C:\dir\a b.exe)"}},
    {R"(sh -c 'a "b" \$HOME; c')", Arguments{"sh", "-c", R"(a "b" \$HOME; c)"}},
    {"run $(x) `y` ; z | w > v", Arguments{"run", "$(x)", "`y`", ";", "z", "|", "w", ">", "v"}},
    {"", std::nullopt},
    {"  ", std::nullopt},
    {"%u", std::nullopt},
    {"\"\" a", std::nullopt},
    {"run \"a", std::nullopt},
    {"run 'a", std::nullopt},
    {"run \"a\\", std::nullopt},
    {"run a\\", std::nullopt},
    {"run %", std::nullopt},
    {"run %z", std::nullopt},
    {"run \"%\"", std::nullopt},
};

TEST(DesktopEntryTest, SplitsExecWithoutAShell) {
  for (const auto& row : kExecCases) {
    EXPECT_EQ(parseExec(row.exec), row.arguments) << row.exec;
  }
}

TEST(DesktopEntryTest, SplitsAHugeExec) {
  const auto arguments = parseExec("run " + std::string(1'000'000, 'x'));
  ASSERT_TRUE(arguments);
  EXPECT_EQ(arguments->back().size(), 1'000'000U);
}

TEST(DesktopEntryTest, ReadsItsOwnGroupOnly) {
  const auto entry = parseDesktopEntry(
      "Name=before\n"
      "[Desktop Entry]\r\n"
      "# Name=comment\n"
      "no pair\n"
      " Name = Mail \\s\\\\s\\q\\ \r\n"
      "Name=second\n"
      "Name[de]=Post\n"
      "Empty=\n"
      "[Desktop Action Compose]\n"
      "Exec=compose");
  const DesktopEntry expected = {{"Name", "Mail  \\s\\q\\"}, {"Name[de]", "Post"}, {"Empty", ""}};
  EXPECT_EQ(entry, expected);
  EXPECT_EQ(valueOf(entry, "Exec"), "");
  EXPECT_TRUE(parseDesktopEntry("").empty());
  EXPECT_TRUE(parseDesktopEntry("[Desktop Entry]\n\n=\n").contains(""));
}

}  // namespace
}  // namespace corvane::osascript
