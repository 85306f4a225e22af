#include "process/QSShellScriptGenerator.h"

#include <gmock/gmock.h>

#include "tests/support/StandardError.h"

namespace corvane {
namespace {

TEST(QSShellScriptGenerator, WritesTheBytesAsAnExecutableFileOrSaysWhyNot) {
  const auto generate = QSShellScriptGenerator::generateShellScriptFromCommand;
  const ScratchFolder folder;
  const std::string script = "#!/bin/sh\n\techo \"Identità\" `date`\n\t\t\n";
  const std::string path = folder.write(".corvane.sh", "of an earlier run, longer than the one of today");
  EXPECT_TRUE(generate(script, ".corvane.sh", folder.path() + "/"));
  EXPECT_EQ(folder.read(".corvane.sh"), script);
  const auto permissions = static_cast<unsigned>(std::filesystem::status(path).permissions());
  EXPECT_EQ(permissions & 0744U, 0700U);

  const StandardError errors;
  EXPECT_FALSE(generate(script, ".corvane.sh", folder.path("missing/")));
  EXPECT_THAT(errors.text(), testing::HasSubstr("cannot write " + folder.path("missing/.corvane.sh")));
}

}  // namespace
}  // namespace corvane
