// A file server's name as users write it: "files.local", "files.local:2222", "::1", "[::1]:2222".
// Pure functions; any thread.
#pragma once

#include <optional>
#include <string>

namespace corvane {

struct Address {
  std::string host;  ///< letters, digits, ".", "-" and "_", never "-" first; or an IPv6 address
  std::string port;  ///< 1 to 65535; empty for the protocol's own
  bool isIpv6 = false;

  /// The host as it stands before a colon.
  [[nodiscard]] std::string bracketed() const { return isIpv6 ? "[" + host + "]" : host; }
  /// The host and, where there is one, its port.
  [[nodiscard]] std::string withPort() const { return port.empty() ? bracketed() : bracketed() + ":" + port; }
};

/// Nothing when `server` is no such name, and so might be read as something else further on.
[[nodiscard]] std::optional<Address> addressFrom(const std::string& server);

}  // namespace corvane
