// One e-mail client as the script sees it: a row of the client table.
// The rows themselves stand in recipes/ClientTable.cpp; script assembly only walks them.
// Owner of the rows: the program, they are constants. Thread: any for the table, main for what a script is
// assembled with.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "script/Facts.h"
#include "script/RunRecord.h"

namespace corvane {

struct Client;

/// What assembling a script asks of the machine while it runs. Owner: the controller, which implements it.
class ScriptHost {
 public:
  virtual ~ScriptHost() = default;

  /// Measures the user's Mail folder for the progress monitor, after telling the user so.
  virtual void measureMailFolder() = 0;

  /// True when `path` is a folder with at least one entry; false also when it cannot be read.
  [[nodiscard]] virtual bool folderHasEntries(const std::string& path) = 0;

  /// The file or folder that an alias stands for, chains followed; a path that is no alias comes back as
  /// itself, normalised. Nothing when it cannot be resolved.
  [[nodiscard]] virtual std::optional<std::string> findOriginalFromAlias(const std::string& path) = 0;
};

/// What a recipe works with. The record is the only thing that a recipe writes.
struct RecipeContext {
  RunRecord& record;
  const Facts& facts;
  ScriptHost& host;
  const Client& client;
  bool relaunch = false;  ///< only the recipes of Apple Mail relaunch their client themselves
};

/// Appends one client's section to `script` and returns the result. Never fails: what goes wrong when the
/// section runs sets the script's own variable `errorCode`.
using Recipe = std::string (*)(const RecipeContext& context, std::string script,
                               const std::string& destination);

/// How a client is asked to leave before its data is archived.
enum class QuitForm {
  common,     ///< only when it runs
  mail,       ///< the same in Apple Mail's order of lines
  microsoft,  ///< asked in any case; its database daemon follows
};

/// A Microsoft client's data folder and file name word in one language of Office.
struct IdentityFolder {
  std::string_view folder;  ///< below the Documents folder
  std::string_view fileNameWord;
};
using IdentityFolders = std::array<IdentityFolder, 6>;

struct Client {
  std::string_view displayName;  ///< as it stands in the configuration, case-sensitive
  std::string_view rotationTag;  ///< handed to the rotation, which goes by archives' names; never empty
  int progressMaximum = 0;       ///< of the step bar, before what the script adds for a server and its end
  Recipe recipe = nullptr;

  QuitForm quitForm = QuitForm::common;
  std::string_view quitEcho = "Quiting email application...";
  std::string_view processPattern;  ///< what its lines in the process list hold
  std::string_view application;     ///< the name it is asked to quit by
  std::string_view relaunch;        ///< the line that starts {application} again; empty for none
  bool canGoOffline = false;        ///< may be set offline instead of being quit

  bool isAppleMail = false;
  bool withAddressBook = false;  ///< the row that serves Apple Mail when the address book is backed up too
  const IdentityFolders* identityFolders = nullptr;
};

using ClientTable = std::span<const Client>;

/// The first row of that display name; Apple Mail has two, told apart by `withAddressBook`.
/// Null when there is none.
[[nodiscard]] const Client* findClient(ClientTable table, std::string_view displayName, bool withAddressBook);

}  // namespace corvane
