#include "tools/ditto/ZipWriter.h"

#include <archive.h>
#include <archive_entry.h>
#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <cstring>

namespace corvane::ditto {
namespace {

constexpr std::size_t kLongestName = 65535;
constexpr int kPiece = 65536;

bool useCharacterSet(const char* locale) { return std::setlocale(LC_CTYPE, locale) != nullptr; }

bool isUtf8(const std::string& text) {
  return std::mbstowcs(nullptr, text.c_str(), 0) != static_cast<std::size_t>(-1);
}

// The library marks names as UTF-8 whenever the locale is. Readers refuse marked names that are not, and give
// unmarked ones back byte by byte.
void chooseMark(const std::string& name, const std::string& target) {
  if (useCharacterSet("C.UTF-8") && isUtf8(name) && isUtf8(target)) return;
  useCharacterSet("C");
}

}  // namespace

struct ZipWriterCallbacks {
  // The library does not free all it has once it knows of a failure: it is told of none, and what it writes
  // afterwards goes nowhere.
  static la_ssize_t write(struct archive*, void* data, const void* bytes, std::size_t size) {
    auto& writer = *static_cast<ZipWriter*>(data);
    if (writer.problem_ == 0 && !writer.target_.write({static_cast<const char*>(bytes), size})) {
      writer.problem_ = errno;
    }
    return static_cast<la_ssize_t>(size);
  }
};

ZipWriter::ZipWriter(TargetFile& target)
    : target_(target), archive_(archive_write_new()), entry_(archive_entry_new()) {
  if (!archive_ || !entry_) {
    cause_ = std::strerror(ENOMEM);
    return;
  }
  open_ = archive_write_set_format_zip(archive_) == ARCHIVE_OK &&
          archive_write_set_bytes_per_block(archive_, kPiece) == ARCHIVE_OK &&
          archive_write_set_bytes_in_last_block(archive_, 1) == ARCHIVE_OK &&
          archive_write_open(archive_, this, nullptr, ZipWriterCallbacks::write, nullptr) == ARCHIVE_OK;
  if (!open_) cause_ = archive_error_string(archive_);
}

ZipWriter::~ZipWriter() {
  archive_entry_free(entry_);
  if (problem_ == 0) problem_ = ECANCELED;
  archive_write_free(archive_);
}

bool ZipWriter::succeeded(int result) const { return result == ARCHIVE_OK && problem_ == 0; }

Transfer ZipWriter::fail() {
  const char* problem = problem_ != 0 ? std::strerror(problem_) : archive_error_string(archive_);
  cause_ = problem ? problem : "cannot be written";
  return Transfer::unwritable;
}

Transfer ZipWriter::begin(const std::string& name, const struct stat& status, const std::string& target) {
  if (!open_) return Transfer::unwritable;
  if (name.size() >= kLongestName) {
    cause_ = "a path in it would be too long for an archive: " + name.substr(0, 100) + "...";
    return Transfer::unwritable;
  }
  chooseMark(name, target);
  archive_entry_clear(entry_);
  archive_entry_copy_pathname(entry_, name.c_str());
  archive_entry_set_mode(entry_, status.st_mode);
  archive_entry_set_uid(entry_, status.st_uid);
  archive_entry_set_gid(entry_, status.st_gid);
  archive_entry_set_mtime(entry_, status.st_mtim.tv_sec, 0);
  archive_entry_set_size(entry_, S_ISREG(status.st_mode) ? status.st_size : 0);
  if (S_ISLNK(status.st_mode)) archive_entry_copy_symlink(entry_, target.c_str());
  return succeeded(archive_write_header(archive_, entry_)) ? Transfer::done : fail();
}

Transfer ZipWriter::addFolder(const std::string& name, const struct stat& status) {
  return begin(name + '/', status, "");
}

Transfer ZipWriter::addLink(const std::string& name, const struct stat& status, const std::string& target) {
  return begin(name, status, target);
}

Transfer ZipWriter::addFile(const std::string& name, const struct stat& status, int file) {
  if (begin(name, status, "") != Transfer::done) return Transfer::unwritable;
  const auto take = [this](std::span<const char> bytes) {
    const la_ssize_t written = archive_write_data(archive_, bytes.data(), bytes.size());
    return problem_ == 0 && written == static_cast<la_ssize_t>(bytes.size());
  };
  const Transfer transfer = readWhole(file, status.st_size, take, cause_);
  if (transfer == Transfer::unwritable) return fail();
  if (transfer == Transfer::unreadable) return transfer;
  return succeeded(archive_write_finish_entry(archive_)) ? Transfer::done : fail();
}

bool ZipWriter::finish() {
  if (!open_) return false;
  if (succeeded(archive_write_close(archive_))) return true;
  static_cast<void>(fail());
  return false;
}

}  // namespace corvane::ditto
