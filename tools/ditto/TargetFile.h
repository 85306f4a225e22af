// A file or link that appears under its name complete or not at all. Until then it has a hidden temporary
// name in the same folder, which is removed when something goes wrong, and also when a signal ends the
// program. Thread: one target at a time in the whole program, used by the thread that handles the signals;
// other threads must block those of kEndingSignals.
#pragma once

#include <signal.h>
#include <array>
#include <cstddef>
#include <span>
#include <string>

#include "tools/ditto/Descriptor.h"

namespace corvane::ditto {

inline constexpr std::array kEndingSignals = {SIGTERM, SIGINT, SIGHUP, SIGQUIT};

/// From now on each of these signals, unless it is ignored, removes the temporary name and ends the program
/// as it would have.
void removeTemporaryOnSignals();

/// While one exists, they wait: for the thread that made it and those that this one starts meanwhile.
class SignalsHeldBack {
 public:
  SignalsHeldBack();
  /// Keeps errno.
  ~SignalsHeldBack();
  SignalsHeldBack(const SignalsHeldBack&) = delete;
  SignalsHeldBack& operator=(const SignalsHeldBack&) = delete;

 private:
  sigset_t before_{};
};

class TargetFile {
 public:
  /// To be known as `name` in `folder`, which stays open as long as this object lives.
  TargetFile(int folder, std::string name);
  ~TargetFile();
  TargetFile(const TargetFile&) = delete;
  TargetFile& operator=(const TargetFile&) = delete;

  /// Each of these answers false, and errno, on failure; EEXIST when the name is a pipe's, a socket's or a
  /// device's, which is not to be replaced.
  [[nodiscard]] bool create();  ///< empty, for its owner only
  [[nodiscard]] bool createLink(const std::string& target);
  [[nodiscard]] bool write(std::span<const char> bytes);
  [[nodiscard]] bool rewrite(off_t position, std::span<const char> bytes);  ///< of what was written

  /// Everything written is on the disk, and then the name is the target's, in place of an earlier one.
  [[nodiscard]] bool putInPlace();

  /// The same, and the name is on the disk too. On failure an earlier one of the name is there as before,
  /// where the file system can exchange names.
  [[nodiscard]] bool putInPlaceForGood();

  [[nodiscard]] int file() const { return file_.get(); }
  [[nodiscard]] const std::string& temporaryName() const { return temporary_; }

  /// Whether the name is that of this file.
  [[nodiscard]] bool wouldReplace(const FileIdentity& file) const;

  /// Whether `name` in `folder` is the target or its temporary name.
  [[nodiscard]] bool isNamed(const FileIdentity& folder, const std::string& name) const;

 private:
  [[nodiscard]] bool statusThere(struct stat& status) const;
  [[nodiscard]] bool exchangeNames() const;
  void forgetTemporary();
  template <typename Make>
  bool make(Make attempt);

  int folder_;
  FileIdentity folderIdentity_;
  std::string name_;
  std::string temporary_;  // empty as long as there is none
  Descriptor file_;
  off_t written_ = 0;
  off_t onItsWay_ = 0;  // to the disk
};

/// The folder and the name that a path stands for. The folder is not open, and errno set, when it cannot be
/// opened or the path names none but a folder.
struct TargetPlace {
  explicit TargetPlace(const std::string& path);

  /// Makes a power cut leave the new file rather than the earlier one, where the file system can. False, and
  /// errno, when it could and failed.
  [[nodiscard]] bool flushName() const;

  Descriptor folder;
  std::string name;
};

}  // namespace corvane::ditto
