// Files of tests, and a folder of its own for one test, removed with everything in it when the test ends.
#pragma once

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace corvane {

/// Writes a whole file, making the folders it lies in.
inline void writeTestFile(const std::string& path, std::string_view bytes, mode_t mode = 0600) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream(path, std::ios::binary) << bytes;
  if (::chmod(path.c_str(), mode) != 0) throw std::runtime_error("cannot write " + path);
}
/// A whole file; empty when it cannot be read.
[[nodiscard]] inline std::string readTestFile(const std::string& path) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}
/// The names of what is in a folder, hidden ones too, sorted; none when there is no such folder.
[[nodiscard]] inline std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code missing;
  for (const auto& entry : std::filesystem::directory_iterator(folder, missing))
    names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

class ScratchFolder {
 public:
  ScratchFolder() : path_((std::filesystem::temp_directory_path() / "corvane-test.XXXXXX").string()) {
    if (!::mkdtemp(path_.data())) throw std::runtime_error("cannot make " + path_);
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  /// Absolute, without a trailing slash.
  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] std::string path(std::string_view name) const { return path_ + "/" + std::string(name); }

  /// Writes a file, making the folders it lies in, and answers its path.
  std::string write(std::string_view name, std::string_view bytes, mode_t mode = 0600) const {
    writeTestFile(path(name), bytes, mode);
    return path(name);
  }
  std::string writeScript(std::string_view name, std::string_view lines) const {
    return write(name, "#!/bin/sh\n" + std::string(lines), 0700);
  }
  std::string makeFolder(std::string_view name) const {
    std::filesystem::create_directories(path(name));
    return path(name);
  }

  /// The bytes of a file; none when it is missing.
  [[nodiscard]] std::string read(std::string_view name) const { return readTestFile(path(name)); }
  /// Names in the folder, hidden ones too, sorted.
  [[nodiscard]] std::vector<std::string> list() const { return namesIn(path_); }

 private:
  std::string path_;
};

}  // namespace corvane
