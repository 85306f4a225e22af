// Copies files and folders, for systems that have no such command.
#include <signal.h>
#include <cstdio>
#include <exception>

#include "tools/ditto/CopyTree.h"
#include "tools/ditto/Options.h"
#include "tools/ditto/Report.h"
#include "tools/ditto/TargetFile.h"

int main(int count, char* arguments[]) {
  using namespace corvane::ditto;
  const auto options = parseOptions(count, arguments);
  if (!options) {
    std::fputs(usage(), stderr);
    return 1;
  }
  // A reader of our messages that is gone, or a limit on file sizes: failures like others, not the end.
  ::signal(SIGPIPE, SIG_IGN);
  ::signal(SIGXFSZ, SIG_IGN);
  removeTemporaryOnSignals();
  Report report(options->verbose);
  try {
    copyTree(*options, report);
  } catch (const std::exception& problem) {
    report.fail(options->source, problem.what());
  }
  return report.failed() ? 1 : 0;
}
