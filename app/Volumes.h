// Port: what a run asks of the machine's file systems.
// Owner: the composition root. Thread: main.
#pragma once

#include <optional>
#include <string>

namespace corvane {

class Volumes {
 public:
  virtual ~Volumes() = default;

  /// The path of the file or folder that the alias at `path` stands for, chains of aliases followed. A path
  /// that is no alias comes back as itself, normalised. Nothing when it cannot be resolved: because the
  /// original is missing, or the chain leads back to itself. Paths are absolute, in UTF-8.
  [[nodiscard]] virtual std::optional<std::string> findOriginalFromAlias(const std::string& path) = 0;
};

}  // namespace corvane
