#include "platform/ProcessStart.h"

#include <fcntl.h>
#include <unistd.h>
#include <csignal>

#include "process/FileMask.h"

namespace corvane {
namespace {

void openStandardDescriptors() {
  int number = STDIN_FILENO;
  while (number >= 0 && number <= STDERR_FILENO) number = ::open("/dev/null", O_RDWR);
  if (number >= 0) ::close(number);
}

}  // namespace

void prepareProcess() {
  openStandardDescriptors();
  std::signal(SIGCHLD, SIG_DFL);
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  keepNewFilesPrivate();
}

}  // namespace corvane
