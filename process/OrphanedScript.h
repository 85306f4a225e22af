// The script of a run that was killed: it outlives its engine, and would tidy the next run's work away.
// Thread: main; blocks for `ps`, and at most 2.5 seconds per script.
#pragma once

#include <string>

namespace corvane {

/// Ends, and logs, what this user's shells still run of the script `path`, each with all that it started. The
/// caller must be the only run. Without effect when the list of processes cannot be had.
void endOrphanedScripts(const std::string& path);

}  // namespace corvane
