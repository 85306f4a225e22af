#include "tools/ditto/Unzip.h"

#include <archive.h>
#include <archive_entry.h>
#include <algorithm>
#include <cerrno>
#include <clocale>
#include <memory>
#include <utility>
#include <vector>

#include "tools/ditto/Attributes.h"
#include "tools/ditto/FolderPath.h"
#include "tools/ditto/Source.h"
#include "tools/ditto/TargetFile.h"
#include "tools/ditto/ZipSource.h"

namespace corvane::ditto {
namespace {

constexpr std::size_t kPiece = 262144;

struct timespec changeTime(archive_entry* entry) {
  if (!archive_entry_mtime_is_set(entry)) return {0, UTIME_OMIT};
  return {archive_entry_mtime(entry), archive_entry_mtime_nsec(entry)};
}

class Unpacker {
 public:
  Unpacker(const ZipSource& source, archive* reader, Descriptor destination, const Options& options,
           Report& report)
      : source_(source),
        archive_(reader),
        path_(std::move(destination)),
        options_(options),
        report_(report) {}

  void run();

 private:
  struct Folder {
    std::vector<std::string> names;
    mode_t mode;
    struct timespec changed;
  };

  void unpack(archive_entry* entry, std::size_t number);
  void unpackFile(archive_entry* entry, TargetFile& target);
  void unpackLink(archive_entry* entry, int folder, TargetFile& target);
  [[nodiscard]] bool writeData(TargetFile& target);
  void finishFolders();
  void failArchive(const std::string& shown);

  const ZipSource& source_;
  archive* archive_;
  FolderPath path_;
  const Options& options_;
  Report& report_;
  std::vector<std::string> names_;  // of the entry at hand
  std::string shown_;
  std::vector<Folder> folders_;
  std::vector<char> buffer_ = std::vector<char>(kPiece);
};

void Unpacker::failArchive(const std::string& shown) {
  const char* cause = archive_error_string(archive_);
  report_.fail(shown, cause ? cause : "cannot be read");
}

void Unpacker::run() {
  archive_entry* entry = nullptr;
  int result = ARCHIVE_OK;
  for (std::size_t number = 0; (result = archive_read_next_header(archive_, &entry)) != ARCHIVE_EOF;
       ++number) {
    if (result != ARCHIVE_OK) failArchive(options_.source);
    if (result == ARCHIVE_FATAL) break;
    if (result == ARCHIVE_OK || result == ARCHIVE_WARN) unpack(entry, number);
  }
  finishFolders();
}

void Unpacker::unpack(archive_entry* entry, std::size_t number) {
  const char* name = archive_entry_pathname(entry);
  if (!name) return report_.fail(options_.source, "holds an entry whose name cannot be read");
  shown_ = source_.exactName(number, name);
  if (!splitInside(shown_, names_))
    return report_.fail(shown_, "refused: it may lie outside the destination");
  if (names_.empty()) return;
  report_.progress(shown_);
  const auto kind = archive_entry_filetype(entry);
  const int folder = path_.goTo(names_, names_.size() - (kind == AE_IFDIR ? 0 : 1));
  if (folder < 0) return report_.failErrno(shown_);
  if (kind == AE_IFDIR) {
    folders_.push_back({names_, archive_entry_perm(entry), changeTime(entry)});
    return;
  }
  TargetFile target(folder, names_.back());
  if (kind == AE_IFREG) return unpackFile(entry, target);
  if (kind == AE_IFLNK) return unpackLink(entry, folder, target);
  report_.fail(shown_, "refused: it is neither a file, a folder nor a link");
}

void Unpacker::unpackFile(archive_entry* entry, TargetFile& target) {
  if (!target.create()) return report_.failErrno(shown_);
  if (!writeData(target)) return;
  if (!setModeAndTime(target.file(), archive_entry_perm(entry), changeTime(entry)) || !target.putInPlace()) {
    report_.failErrno(shown_);
  }
}

bool Unpacker::writeData(TargetFile& target) {
  la_ssize_t count = 0;
  while ((count = archive_read_data(archive_, buffer_.data(), buffer_.size())) > 0) {
    if (target.write({buffer_.data(), static_cast<std::size_t>(count)})) continue;
    report_.failErrno(shown_);
    return false;
  }
  if (count < 0) failArchive(shown_);
  return count == 0;
}

void Unpacker::unpackLink(archive_entry* entry, int folder, TargetFile& target) {
  const char* linked = archive_entry_symlink(entry);
  if (!linked) return report_.fail(shown_, "is a link whose target cannot be read");
  if (!target.createLink(linked) || !setLinkTime(folder, target.temporaryName().c_str(), changeTime(entry)) ||
      !target.putInPlace()) {
    report_.failErrno(shown_);
  }
}

// Last of all, and those inside before those around them: a mode may forbid writing, and whatever is put into
// a folder changes its time.
void Unpacker::finishFolders() {
  std::sort(folders_.begin(), folders_.end(),
            [](const Folder& a, const Folder& b) { return a.names > b.names; });
  for (const Folder& folder : folders_) {
    const int open = path_.goTo(folder.names, folder.names.size());
    if (open < 0 || !setModeAndTime(open, folder.mode, folder.changed))
      report_.failErrno(folder.names.back());
  }
}

struct FreeArchive {
  void operator()(archive* opened) const { archive_read_free(opened); }
};

}  // namespace

void unzip(const Options& options, Report& report) {
  struct stat status {};
  const Descriptor source = openSource(options.source, status, report);
  if (!source.isOpen()) return;
  // For names that some archives hold in Unicode a second time.
  std::setlocale(LC_CTYPE, "C.UTF-8");
  ZipSource bytes(source.get(), status.st_size);
  const std::unique_ptr<archive, FreeArchive> opened(archive_read_new());
  if (!opened || archive_read_support_format_zip(opened.get()) != ARCHIVE_OK ||
      !bytes.openWith(opened.get())) {
    const char* cause = opened ? archive_error_string(opened.get()) : nullptr;
    return report.fail(options.source, cause ? cause : "cannot be read as an archive");
  }
  bool isNew = false;
  Descriptor destination = makeFolders(options.destination.c_str(), isNew);
  if (!destination.isOpen()) return report.failErrno(options.destination);
  Unpacker(bytes, opened.get(), std::move(destination), options, report).run();
}

}  // namespace corvane::ditto
