#include "process/QSShellScriptGenerator.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "tests/support/FullDisk.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/StandardError.h"

namespace corvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

bool generate(std::string_view script, const std::string& folder) {
  return QSShellScriptGenerator::generateShellScriptFromCommand(script, ".corvane.sh", folder);
}

TEST(QSShellScriptGenerator, WritesTheBytesAsAnExecutableFile) {
  const ScratchFolder folder;
  const std::string script = "#!/bin/sh\n\techo \"Identità\" `date`\n\t\t\n";
  folder.write(".corvane.sh", "of an earlier run, which was longer than the one of today");
  EXPECT_TRUE(generate(script, folder.path() + "/"));
  EXPECT_EQ(folder.read(".corvane.sh"), script);
  EXPECT_THAT(folder.list(), ElementsAre(".corvane.sh"));
  struct stat status {};
  ASSERT_EQ(::stat(folder.path(".corvane.sh").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & (S_IRWXU | S_IRGRP | S_IROTH), mode_t{S_IRWXU});
}

TEST(QSShellScriptGenerator, LeavesNothingWhereItCannotWrite) {
  const ScratchFolder folder;
  const StandardError errors;
  EXPECT_FALSE(generate("echo\n", folder.path("missing/")));
  EXPECT_THAT(errors.text(), HasSubstr("cannot write " + folder.path("missing/.corvane.sh")));
  bool written = true;
  {
    const FullDisk full;
    written = generate("#!/bin/sh\nrm -r -f \"/tmp/.QVB_Backup\"\n", folder.path() + "/");
  }
  EXPECT_FALSE(written);
  EXPECT_THAT(folder.list(), IsEmpty());
}

}  // namespace
}  // namespace corvane
