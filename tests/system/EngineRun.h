// The real program, started in a home folder of its own, seen from outside: its log, its exit, its files.
#pragma once

#include <unistd.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "process/ChildProcess.h"
#include "process/Spawn.h"
#include "tests/support/ScratchFolder.h"

namespace corvane {

class EngineRun {
 public:
  /// Makes the home folder with preferences that name a configuration, and an empty destination. All that it
  /// starts, it starts as `user`; another one than our own needs root.
  explicit EngineRun(uid_t user = ::geteuid());
  ~EngineRun();
  EngineRun(const EngineRun&) = delete;
  EngineRun& operator=(const EngineRun&) = delete;

  [[nodiscard]] const std::string& home() const { return home_.path(); }
  [[nodiscard]] std::string destination() const { return home() + "/Backups"; }
  [[nodiscard]] std::string support() const { return library() + "/Application Support/Quillon/Corvane"; }
  [[nodiscard]] std::string library() const { return home() + "/Library"; }
  [[nodiscard]] std::string preferences() const {
    return library() + "/Preferences/com.quillon.Corvane.plist";
  }
  [[nodiscard]] std::string configuration() const { return support() + "/Config.plist"; }

  /// Writes "Config.plist": the destination, an application that is not missing, and `entries` as they stand
  /// in an XML property list.
  void configure(const std::string& entries);
  /// Configures Apple Mail with a mail folder of a few messages.
  void configureMail();
  /// Writes preferences that make archives' names of `filenameTemplate`.
  void nameArchives(const std::string& filenameTemplate);
  /// Puts a command of that name before all others on the engine's PATH.
  void installTool(const std::string& name, const std::string& script);

  /// The process of a tool that writes it, and a line's end, to "pid" in the home folder.
  [[nodiscard]] pid_t toolsProcess() const;

  /// Has the engine started by another program, of that absolute path and with those arguments before its
  /// own.
  void startUnder(std::vector<std::string> starter) { starter_ = std::move(starter); }
  /// Starts the engine, with a window on `display` or headless when that is empty.
  void start(const std::string& display = "");
  /// Waits for the engine to end and answers its exit status; nothing when it has not within the limit.
  [[nodiscard]] std::optional<int> exitStatus(std::chrono::seconds limit = std::chrono::seconds(30));
  /// `start` and `exitStatus` of a headless run.
  [[nodiscard]] std::optional<int> run();

  /// Waits until the log holds `text`.
  [[nodiscard]] bool logs(const std::string& text,
                          std::chrono::seconds limit = std::chrono::seconds(20)) const;
  [[nodiscard]] std::string log() const;
  /// Starts to count announcements that the run is complete.
  void listen();
  [[nodiscard]] int announcements() const;
  /// What the engine wrote to its standard output, and to standard error before its log was open.
  [[nodiscard]] std::string output() const;
  [[nodiscard]] pid_t pid() const { return pid_; }
  [[nodiscard]] pid_t notificationDaemon() const { return daemonPid_; }
  /// The most memory that the engine has had so far, in KiB, as far as it was seen by `exitStatus`.
  [[nodiscard]] long peakMemory() const { return peakMemory_; }

 private:
  [[nodiscard]] std::unique_ptr<ChildProcess> launch(std::vector<std::string> words,
                                                     const std::string& display,
                                                     const std::string& outputName, pid_t& pid);

  const uid_t user_;
  std::vector<std::string> starter_;
  ScratchFolder home_;
  std::unique_ptr<ChildProcess> notificationCentre_;
  std::unique_ptr<ChildProcess> listener_;
  std::unique_ptr<ChildProcess> engine_;
  pid_t pid_ = -1;
  pid_t daemonPid_ = -1;
  long peakMemory_ = 0;
  std::optional<int> status_;
};

/// An XML property list around the entries of its root dictionary.
[[nodiscard]] std::string xmlPropertyList(const std::string& entries);

}  // namespace corvane
