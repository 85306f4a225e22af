#include "process/QSComputerName.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(QSComputerName, HostNameUpToLocalInLowerCaseAndLocalizedOnlyWithoutItsBlanks) {
  const struct {
    const char *host, *name, *localized;
  } rows[] = {{"Office-Mac.local", "office-mac", "Office-Mac.local"},
              {"ZA.localhost.local", "za", "ZA.localhost.local"},
              {" \tAnna's  Mac\t.LOCAL.", "anna's  mac\t", "-\tAnna's--Mac\t.LOCAL."},
              {"local", "local", "local"},
              {".local.Mac", "Unknown Computer Name", ".local.Mac"},
              {" ", "Unknown Computer Name", "-"}};
  for (const auto& row : rows) {
    EXPECT_EQ(QSComputerName::getComputerName(row.host), row.name);
    EXPECT_EQ(QSComputerName::getLocalizedComputerName(row.host), row.localized);
  }
}

}  // namespace
}  // namespace corvane
