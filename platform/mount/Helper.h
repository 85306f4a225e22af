// Running the programs that mount and unmount. Thread: any; blocks until the program has ended.
#pragma once

#include <chrono>

#include "app/Volumes.h"
#include "platform/mount/MountPlan.h"

namespace corvane {

/// Runs the plan's helper, found in PATH or among the system's own commands, without a shell. After `limit`
/// it is ended with all that it started. Its failure is ENOENT when there is no such program, ETIMEDOUT, or
/// EIO with what it said.
[[nodiscard]] MountOutcome runHelper(const MountPlan& plan, std::chrono::milliseconds limit);

}  // namespace corvane
