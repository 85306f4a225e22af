// Running the programs that mount and unmount. Thread: any; blocks until the program has ended.
#pragma once

#include "app/Volumes.h"
#include "platform/mount/MountPlan.h"
#include "process/RunTool.h"

namespace corvane {

/// Runs the plan's helper, found in PATH or among the system's own commands, without a shell. It is
/// ended with all that it started when the `patience` is. Its failure is ENOENT when there is no such
/// program, ETIMEDOUT, EINTR when this program has been asked to end, or EIO with what it said.
[[nodiscard]] MountOutcome runHelper(const MountPlan& plan, const Patience& patience);

}  // namespace corvane
