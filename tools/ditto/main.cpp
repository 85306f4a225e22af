// Copies files and folders, and makes and unpacks archives of them, for systems that have no such command.
#include <signal.h>
#include <cstdio>
#include <exception>

#include "tools/ditto/CopyTree.h"
#include "tools/ditto/Options.h"
#include "tools/ditto/Report.h"
#include "tools/ditto/TargetFile.h"
#include "tools/ditto/Unzip.h"
#include "tools/ditto/ZipArchive.h"

namespace {

using namespace corvane::ditto;

void run(const Options& options, Report& report) {
  switch (options.operation) {
    case Operation::copy:
      copyTree(options, report);
      break;
    case Operation::create:
      createArchive(options, report);
      break;
    case Operation::extract:
      unzip(options, report);
      break;
  }
}

}  // namespace

int main(int count, char* arguments[]) {
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
    run(*options, report);
  } catch (const std::exception& problem) {
    report.fail(options->source, problem.what());
  }
  return report.failed() ? 1 : 0;
}
