// The machine's file systems. One source file per system. Thread: main.
#pragma once

#include "app/Volumes.h"

namespace corvane {

class SystemVolumes : public Volumes {
 public:
  [[nodiscard]] std::optional<std::string> findOriginalFromAlias(const std::string& path) override;
};

}  // namespace corvane
