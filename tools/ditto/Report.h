// What the user is told while the command works, on standard error, and whether anything went wrong.
// Thread: one at a time.
#pragma once

#include <string>
#include <string_view>

namespace corvane::ditto {

/// The path of what is at `path` in the folder `root`.
[[nodiscard]] std::string below(const std::string& root, const std::string& path);

class Report {
 public:
  /// `verbose`: progress() writes its line.
  explicit Report(bool verbose) : verbose_(verbose) {}

  /// Writes "ditto: PATH: CAUSE" and remembers that something failed. Whoever reads these lines takes each
  /// for one message, so control characters of a path are shown as question marks.
  void fail(std::string_view path, std::string_view cause);

  /// The same with the cause that errno names.
  void failErrno(std::string_view path);

  void progress(std::string_view path) const;

  [[nodiscard]] bool failed() const { return failed_; }

 private:
  bool verbose_;
  bool failed_ = false;
};

}  // namespace corvane::ditto
