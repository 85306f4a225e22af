// Writes the entries of a PKZip archive: names as they are, marked as UTF-8 when they are that; modes,
// symbolic links and times to the second; large archives and files in the 64-bit form. Extended attributes
// have no place in it. Owner: whoever made the target, which outlives it. Thread: one at a time, and no other
// may depend on the character set of the locale meanwhile.
#pragma once

#include <sys/stat.h>
#include <string>

#include "tools/ditto/Source.h"
#include "tools/ditto/TargetFile.h"

struct archive;
struct archive_entry;

namespace corvane::ditto {

class ZipWriter {
 public:
  explicit ZipWriter(TargetFile& target);
  ~ZipWriter();
  ZipWriter(const ZipWriter&) = delete;
  ZipWriter& operator=(const ZipWriter&) = delete;

  /// Each of these answers `unwritable` when the archive cannot be continued; cause() says why.
  /// Names have slashes between them and none at the end.
  [[nodiscard]] Transfer addFolder(const std::string& name, const struct stat& status);
  [[nodiscard]] Transfer addLink(const std::string& name, const struct stat& status,
                                 const std::string& target);
  /// `unreadable`: `file` could not be read to its end, and the archive is of no more use.
  [[nodiscard]] Transfer addFile(const std::string& name, const struct stat& status, int file);

  /// Writes what follows the last entry. False when the archive is not complete.
  [[nodiscard]] bool finish();

  /// Why the last operation failed.
  [[nodiscard]] const std::string& cause() const { return cause_; }

 private:
  friend struct ZipWriterCallbacks;

  [[nodiscard]] bool succeeded(int result) const;
  [[nodiscard]] Transfer begin(const std::string& name, const struct stat& status, const std::string& target);
  [[nodiscard]] Transfer fail();

  TargetFile& target_;
  struct archive* archive_;
  struct archive_entry* entry_;
  std::string cause_;
  bool open_ = false;
  int problem_ = 0;  // why the target could not be written
};

}  // namespace corvane::ditto
