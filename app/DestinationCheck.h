// Makes sure that the backup has somewhere to go before anything is touched. Thread: main, which waits while
// a server volume is being mounted.
#pragma once

#include <functional>
#include <string>

#include "app/BackupConfiguration.h"
#include "app/Volumes.h"
#include "app/Workspace.h"
#include "script/RunRecord.h"

namespace corvane {

/// True when the local destination is a folder, or the server volume stands under "/Volumes", where it is
/// mounted if it does not yet. Notes in `record` which of the two this run uses; each step goes to
/// `showStatus`, which logs it, and the outcome to the log.
[[nodiscard]] bool isDestinationAvailable(const BackupConfiguration& configuration, RunRecord& record,
                                          Volumes& volumes, Workspace& workspace,
                                          const std::function<void(const std::string&)>& showStatus);

}  // namespace corvane
