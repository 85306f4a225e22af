// Port: what a run asks of the machine's file systems.
// Owner: the composition root. Thread: main.
#pragma once

#include <optional>
#include <string>

namespace corvane {

/// A volume on a file server, as the settings describe it; texts in UTF-8, nothing where a setting is absent.
struct ServerVolume {
  std::string url;                ///< percent-escaped
  std::string mountDirectory;     ///< below the volume's folder; empty when the system is to choose
  std::string mountDirectoryUrl;  ///< percent-escaped path of it; empty as well
  std::optional<std::string> protocol;
  std::optional<std::string> server;
  std::optional<std::string> name;
  std::optional<std::string> user;
  std::optional<std::string> password;
};

struct MountOutcome {
  long error = 0;       ///< the system's number for what went wrong; 0 when the volume was mounted
  int reference = 0;    ///< the system's number for the mounted volume
  std::string problem;  ///< the cause in words where the system gives one; never holds the password
};

class Volumes {
 public:
  virtual ~Volumes() = default;

  /// True when a volume stands under "/Volumes/" followed by `name`.
  [[nodiscard]] virtual bool isMounted(const std::string& name) = 0;

  /// Mounts a server volume below "/Volumes". Returns when it is mounted or cannot be.
  [[nodiscard]] virtual MountOutcome mountServer(const ServerVolume& volume) = 0;

  /// The path of the file or folder that the alias at `path` stands for, chains of aliases followed. A path
  /// that is no alias comes back as itself, normalised. Nothing when it cannot be resolved: because the
  /// original is missing, or the chain leads back to itself. Paths are absolute, in UTF-8.
  [[nodiscard]] virtual std::optional<std::string> findOriginalFromAlias(const std::string& path) = 0;
};

}  // namespace corvane
