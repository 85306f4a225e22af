#include "tools/ditto/Report.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace corvane::ditto {
namespace {

void writeLine(std::string line) {
  for (char& character : line) {
    if (static_cast<unsigned char>(character) < ' ' || character == '\x7f') character = '?';
  }
  line += '\n';
  std::fputs(line.c_str(), stderr);
}

}  // namespace

std::string below(const std::string& root, const std::string& path) {
  return root.ends_with('/') ? root + path : root + '/' + path;
}

void Report::fail(std::string_view path, std::string_view cause) {
  failed_ = true;
  writeLine("ditto: " + std::string(path) + ": " + std::string(cause));
}

void Report::failErrno(std::string_view path) { fail(path, std::strerror(errno)); }

void Report::progress(std::string_view path) const {
  if (verbose_) writeLine("copying " + std::string(path));
}

}  // namespace corvane::ditto
