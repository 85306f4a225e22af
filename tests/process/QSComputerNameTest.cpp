#include "process/QSComputerName.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(QSComputerName, HostNameUpToLocalInLowerCase) {
  const std::pair<const char*, const char*> cases[] = {
      {"Office-Mac.local", "office-mac"},     {"Office-Mac", "office-mac"},
      {"Mac.Example.COM", "mac.example.com"}, {"A.localhost.local", "a"},
      {"Anna Mac.local.", "anna mac"},        {"local", "local"},
      {".local", "Unknown Computer Name"},    {".local.Mac", "Unknown Computer Name"},
      {"", "Unknown Computer Name"},
  };
  for (const auto& [host, name] : cases) EXPECT_EQ(QSComputerName::getComputerName(host), name) << host;
}

TEST(QSComputerName, LocalizedNameOnlyLosesItsBlanks) {
  const std::pair<const char*, const char*> cases[] = {
      {"Office-Mac.local", "Office-Mac.local"},
      {" Anna's  Mac ", "-Anna's--Mac-"},
      {"Tab\there", "Tab\there"},
      {"", ""},
  };
  for (const auto& [host, name] : cases) EXPECT_EQ(QSComputerName::getLocalizedComputerName(host), name);
}

}  // namespace
}  // namespace corvane
