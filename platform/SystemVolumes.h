// The machine's file systems. One source file per system.
// Owner: the composition root. Thread: main.
//
// On Linux a volume is mounted by the system's helper for its protocol, and stands there when it can be
// listed and is another file system than the folder above it; an empty folder that an unmounted volume left
// behind does not count. A server that does not answer is given up: see platform/mount/ServerMount.h for the
// times.
#pragma once

#include "app/Volumes.h"

namespace corvane {

class SystemVolumes : public Volumes {
 public:
  [[nodiscard]] bool isMounted(const std::string& name) override;
  [[nodiscard]] MountOutcome mountServer(const ServerVolume& volume) override;
  [[nodiscard]] std::optional<std::string> findOriginalFromAlias(const std::string& path) override;
};

}  // namespace corvane
