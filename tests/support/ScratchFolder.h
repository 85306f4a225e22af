// A folder of its own for one test, removed with everything in it when the test ends.
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
    const std::string file = path(name);
    std::filesystem::create_directories(std::filesystem::path(file).parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
    if (::chmod(file.c_str(), mode) != 0) throw std::runtime_error("cannot write " + file);
    return file;
  }
  std::string writeScript(std::string_view name, std::string_view lines) const {
    return write(name, "#!/bin/sh\n" + std::string(lines), 0700);
  }
  std::string makeFolder(std::string_view name) const {
    std::filesystem::create_directories(path(name));
    return path(name);
  }

  /// The bytes of a file; none when it is missing.
  [[nodiscard]] std::string read(std::string_view name) const {
    std::ostringstream bytes;
    bytes << std::ifstream(path(name), std::ios::binary).rdbuf();
    return bytes.str();
  }
  /// Names in the folder, hidden ones too, sorted.
  [[nodiscard]] std::vector<std::string> list() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
      names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

 private:
  std::string path_;
};

}  // namespace corvane
