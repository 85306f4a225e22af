// What the tests of the command share: they use it as scripts do.
#pragma once

#include <gmock/gmock.h>
#include <string>

#include "process/RunTool.h"
#include "tests/support/ScratchFolder.h"

namespace corvane {

// `same A B TIME` compares folders by their bytes, links, modes and times: %Y for seconds, %.9Y for all
// digits. `readable` has a.zip read by other programs; one of them reads from a pipe, without a look at the
// directory.
inline constexpr const char* kDittoCommands = R"~(cd "$0" && PATH=${DITTO%/*}:$PATH || exit
list() (cd "$1" && find . -mindepth 1 ! -type l -exec stat -c "%n %f $2" {} + -o -printf '%p > %l\n' | sort)
same() { [ "$(list "$1" "$3")" = "$(list "$2" "$3")" ] && diff -r --no-dereference "$1" "$2" || echo differ; }
readable() { unzip -tqq a.zip && 7z t a.zip >7z.log && bsdtar -xOf - <a.zip >bsdtar.log 2>&1 && python3 -c "
import zipfile
assert zipfile.ZipFile('a.zip').testzip() is None" || echo unreadable; }
)~";

class DittoKit : public testing::Test, protected ScratchFolder {
 protected:
  /// Runs a script in the scratch folder and compares what it wrote. With status 77 it says that on this
  /// machine it can find nothing out.
  void expect(const std::string& script, const std::string& expected) const {
    const std::string result = shell(script);
    if (result.ends_with("(77)~")) GTEST_SKIP() << result;
    EXPECT_EQ(result, expected);
  }
  /// What a script wrote, and its status if that is not 0.
  [[nodiscard]] std::string shell(const std::string& script) const {
    LaunchCommand command{
        "/bin/sh", {"/bin/sh", "-c", kDittoCommands + script, path()}, currentEnvironment()};
    setVariable(command.environment, "DITTO", DITTO_PROGRAM);
    setVariable(command.environment, "LC_ALL", "C.UTF-8");
    const ToolResult result = runTool(command, Capture::outputAndErrors, {.limit = std::chrono::minutes(5)});
    return result.status == 0 ? result.output : result.output + "(" + std::to_string(result.status) + ")~";
  }
};

}  // namespace corvane
