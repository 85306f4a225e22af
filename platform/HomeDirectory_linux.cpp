#include "platform/HomeDirectory.h"

#include <pwd.h>
#include <unistd.h>
#include <algorithm>
#include <cstdlib>

namespace corvane {
namespace {

// One spelling of one folder: what an earlier run started is found by it.
std::string withoutNeedlessSlashes(std::string path) {
  const auto end = std::unique(path.begin(), path.end(), [](char a, char b) { return a == '/' && b == '/'; });
  path.erase(end, path.end());
  if (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return path;
}

}  // namespace

std::string getHomeDirectory() {
  if (const char* home = std::getenv("HOME"); home && *home) return withoutNeedlessSlashes(home);
  const passwd* entry = ::getpwuid(::geteuid());
  return entry && entry->pw_dir ? withoutNeedlessSlashes(entry->pw_dir) : "";
}

}  // namespace corvane
