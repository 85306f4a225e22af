#include "process/QSShellScriptGenerator.h"

#include "process/Files.h"
#include "process/Log.h"
#include "process/RunTool.h"

namespace corvane {

bool QSShellScriptGenerator::generateShellScriptFromCommand(std::string_view script,
                                                            const std::string& fileName,
                                                            const std::string& folder) {
  const std::string path = folder + fileName;
  std::string problem;
  if (!writeFileAtomically(path, script, problem)) {
    log(problem);
    return false;
  }
  const ToolResult made = runTool({"/bin/chmod", "+x", path});
  if (!made.problem.empty()) {
    log(made.problem);
  } else if (made.status != 0) {
    log("Make task Executable: Unsuccessful");
  }
  return true;
}

}  // namespace corvane
