#include "platform/mount/Address.h"

#include <arpa/inet.h>
#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace corvane {
namespace {

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kLettersAndDigits =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";

bool isIpv6(const std::string& text) {
  in6_addr address{};
  return ::inet_pton(AF_INET6, text.c_str(), &address) == 1;
}

bool isHostName(const std::string& text) {
  const auto mayStand = [](char byte) {
    return kLettersAndDigits.find(byte) != std::string_view::npos || byte == '.' || byte == '-' ||
           byte == '_';
  };
  return !text.empty() && kLettersAndDigits.find(text.front()) != std::string_view::npos &&
         std::all_of(text.begin(), text.end(), mayStand);
}

bool isPort(const std::string& text) {
  const bool number =
      !text.empty() && text.size() <= 5 && text.find_first_not_of(kDigits) == std::string::npos;
  const long value = number ? std::strtol(text.c_str(), nullptr, 10) : 0;
  return value >= 1 && value <= 65535;
}

}  // namespace

std::optional<Address> addressFrom(const std::string& server) {
  if (isIpv6(server)) return Address{server, "", true};
  std::string host = server;
  std::string port;
  const auto colon = server.rfind(':');
  const bool closed = server.ends_with(']');
  if (colon != std::string::npos && !closed) {
    host = server.substr(0, colon);
    port = server.substr(colon + 1);
    if (!isPort(port)) return std::nullopt;
  }
  if (host.starts_with('[') && host.ends_with(']')) {
    host = host.substr(1, host.size() - 2);
    return isIpv6(host) ? std::optional(Address{host, port, true}) : std::nullopt;
  }
  return isHostName(host) ? std::optional(Address{host, port}) : std::nullopt;
}

}  // namespace corvane
