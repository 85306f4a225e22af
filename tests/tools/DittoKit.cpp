#include "tests/tools/DittoKit.h"

#include <archive.h>
#include <archive_entry.h>
#include <sys/stat.h>
#include <unistd.h>
#include <algorithm>
#include <clocale>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace corvane {
namespace {

std::string bytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
}

std::string describe(const std::filesystem::path& path, Times times) {
  struct stat status {};
  ::lstat(path.c_str(), &status);
  if (S_ISLNK(status.st_mode)) return "link to " + std::filesystem::read_symlink(path).string();
  std::string text = S_ISDIR(status.st_mode) ? "folder " : "file ";
  text += std::to_string(status.st_mode & 07777);
  if (times != Times::none) text += " at " + std::to_string(status.st_mtim.tv_sec);
  if (times == Times::nanoseconds) text += '.' + std::to_string(status.st_mtim.tv_nsec);
  return S_ISREG(status.st_mode) ? text + ": " + bytesOf(path) : text;
}

}  // namespace

ToolResult DittoKit::ditto(std::vector<std::string> arguments, std::vector<std::string> before) {
  before.emplace_back(DITTO_PROGRAM);
  before.insert(before.end(), arguments.begin(), arguments.end());
  return runTool(before);
}

ToolResult DittoKit::shell(const std::string& script) const {
  LaunchCommand command{
      "/bin/sh", {"/bin/sh", "-c", "cd \"$0\" || exit\n" + script, path("")}, currentEnvironment()};
  setVariable(command.environment, "DITTO", DITTO_PROGRAM);
  setVariable(command.environment, "LC_ALL", "C.UTF-8");
  return runTool(command);
}

void DittoKit::makeFolder(const std::string& name, mode_t mode) const {
  std::filesystem::create_directories(path(name));
  ::chmod(path(name).c_str(), mode);
}

void DittoKit::write(const std::string& name, const std::string& bytes, mode_t mode) const {
  std::ofstream(path(name), std::ios::binary) << bytes;
  ::chmod(path(name).c_str(), mode);
}

void DittoKit::makeLink(const std::string& name, const std::string& target) const {
  std::filesystem::create_symlink(target, path(name));
}

std::string DittoKit::read(const std::string& name) const { return bytesOf(path(name)); }

std::map<std::string, std::string> contents(const std::string& folder, Times times) {
  std::map<std::string, std::string> found;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    found[entry.path().lexically_relative(folder)] = describe(entry.path(), times);
  }
  return found;
}

std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> namesInArchive(const std::string& path) {
  std::setlocale(LC_CTYPE, "C.UTF-8");
  std::vector<std::string> names;
  archive* reader = archive_read_new();
  archive_read_support_format_zip(reader);
  archive_read_open_filename(reader, path.c_str(), 65536);
  archive_entry* entry = nullptr;
  while (archive_read_next_header(reader, &entry) == ARCHIVE_OK)
    names.emplace_back(archive_entry_pathname(entry));
  archive_read_free(reader);
  return names;
}

}  // namespace corvane
