// Makes sure that the backup has somewhere to go before anything is touched. Thread: main.
#pragma once

#include <functional>
#include <string>

#include "app/BackupConfiguration.h"
#include "script/RunRecord.h"

namespace corvane {

/// True when the local destination is a folder, or the server volume is mounted under "/Volumes". Notes in
/// `record` which of the two this run uses; each step goes to `showStatus`, and the outcome to the log.
[[nodiscard]] bool isDestinationAvailable(const BackupConfiguration& configuration, RunRecord& record,
                                          const std::function<void(const std::string&)>& showStatus);

}  // namespace corvane
