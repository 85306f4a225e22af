// The system's own `crontab` command, but with an empty folder of crontabs that only this process and those
// it starts see: the user's stay untouched, whatever happens to the test. Needs Linux's mount namespaces.
// Thread: made while the process has only one.
#pragma once

#include <gtest/gtest.h>

#include "process/RunTool.h"
#include "tests/support/OwnMounts.h"
#include "tests/support/ScratchFolder.h"

namespace corvane {

/// A line as the companion application writes it.
inline const std::string kOurs = "30 2 * * * \"/Apps/BackupEngine.app/BackupEngine\"\n";

class PrivateCrontab {
 public:
  PrivateCrontab() { mounts_.cover("/var/spool/cron/crontabs", spool_.path()); }

  /// Why there is none; the test is then to be skipped.
  [[nodiscard]] const std::string& problem() const { return mounts_.problem(); }

  void install(const std::string& text) const {
    const auto installed = runTool({kCommand, files_.write("crontab", text)});
    ASSERT_EQ(installed.status, 0) << installed.output;
  }
  /// As the command lists it; "none" when there is no crontab.
  [[nodiscard]] std::string list() const {
    const auto listing = runTool({kCommand, "-l"}, Capture::outputOnly);
    return listing.status == 0 ? listing.output : "none";
  }
  /// From now on these lines of shell are the command.
  void replaceCommand(const std::string& script) {
    mounts_.cover(kCommand, files_.writeScript("command", script));
  }

 private:
  static constexpr const char* kCommand = "/usr/bin/crontab";

  ScratchFolder spool_;
  ScratchFolder files_;
  OwnMounts mounts_;
};

}  // namespace corvane
