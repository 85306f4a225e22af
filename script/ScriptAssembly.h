// Turns the configured clients into the one shell script that carries out a run.
//
// The script's text is a format of its own: the controller looks for six texts in the output (OutputTexts.h),
// and every section relies on the variable `errorCode` that the header declares (0 success, 1 failure,
// anything else completed with errors). Thread: main.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "script/Client.h"
#include "script/Facts.h"
#include "script/RunRecord.h"

namespace corvane {

/// What the configuration says about the script.
struct ScriptOptions {
  std::vector<std::string> clients;  ///< display names, in the order of their backups
  std::string destination;           ///< folder, not escaped
  std::int32_t language = 0;         ///< index of the language of the Microsoft folder names
  bool backupAddressBook = false;
  bool relaunchClient = false;
  bool shutdownOnCompletion = false;
  std::optional<int> numberOfBackups;  ///< archives to keep; 0 and below count as 1, none keeps all
};

class ScriptAssembly {
 public:
  /// All arguments are borrowed and must outlive the assembly.
  ScriptAssembly(RunRecord& record, const Facts& facts, ClientTable clients, ScriptHost& host)
      : record_(record), facts_(facts), clients_(clients), host_(host) {}

  /// Builds the whole script in the record's `shellScript` and leaves the record's other script fields as the
  /// last client set them. Never fails: a name that the table does not know adds no section.
  void assemble(const ScriptOptions& options);

 private:
  void addClient(const std::string& displayName);
  void addSection(const Client& client);
  void chooseIdentityFolder(const Client& client);
  void addServerCopy();
  void addRotation();
  void addTrailer();
  [[nodiscard]] bool relaunches() const { return options_.relaunchClient && !options_.shutdownOnCompletion; }

  RunRecord& record_;
  const Facts& facts_;
  const ClientTable clients_;
  ScriptHost& host_;
  ScriptOptions options_;
  std::string rotationTag_;  // of the last client that had a section; an unknown client is pruned as that one
};

}  // namespace corvane
