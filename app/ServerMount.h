// Mounting a server volume. Thread: main, which it keeps waiting until the server has answered or the
// system has given up on it.
#pragma once

#include "app/MountRequest.h"
#include "app/Volumes.h"
#include "app/Workspace.h"

namespace corvane {

/// Asks for the volume and logs what came of it. Whether it is there now is for the caller to look: the
/// system may have given it another name.
void mountServer(const MountRequest& request, Volumes& volumes, Workspace& workspace);

}  // namespace corvane
