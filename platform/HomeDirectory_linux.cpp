#include "platform/HomeDirectory.h"

#include <pwd.h>
#include <unistd.h>
#include <cstdlib>

namespace corvane {

std::string homeDirectory() {
  if (const char* home = std::getenv("HOME"); home && *home) return home;
  const passwd* entry = ::getpwuid(::geteuid());
  return entry && entry->pw_dir ? entry->pw_dir : "";
}

}  // namespace corvane
