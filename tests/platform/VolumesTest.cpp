#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/SystemVolumes.h"
#include "tests/support/ScratchFolder.h"

namespace corvane {
namespace {

class VolumesTest : public testing::Test {
 protected:
  void link(const std::string& target, const std::string& name) const {
    ASSERT_EQ(::symlink(target.c_str(), home.path(name).c_str()), 0);
  }
  std::string resolve(const std::string& name) {
    return volumes.findOriginalFromAlias(home.path(name)).value_or("none");
  }

  SystemVolumes volumes;
  ScratchFolder home;
};

TEST_F(VolumesTest, FollowsChainsOfLinksToTheOriginal) {
  const std::string original = home.makeFolder("Datos/Identit\u00E0 di Office");
  link("Datos/Identit\u00E0 di Office", "third");
  link(home.path("third"), "second");
  link("./second", "first");
  link("Datos", "parent");
  EXPECT_EQ(resolve("first"), original);
  EXPECT_EQ(resolve("parent/Identit\u00E0 di Office"), original);
}

TEST_F(VolumesTest, NormalisesWhatIsNoAlias) {
  home.write("Mail/inbox", "");
  EXPECT_EQ(resolve("Mail"), home.path("Mail"));
  EXPECT_EQ(resolve("./Mail//../Mail/inbox"), home.path("Mail/inbox"));
}

TEST_F(VolumesTest, WhatLeadsNowhereIsNotResolved) {
  link("missing", "dangling");
  link("dangling", "to dangling");
  link("circle", "circle");
  link("one", "other");
  link("other", "one");
  for (const char* name : {"missing", "dangling", "to dangling", "circle", "one", "dangling/inbox"}) {
    EXPECT_EQ(resolve(name), "none") << name;
  }
  EXPECT_EQ(volumes.findOriginalFromAlias(""), std::nullopt);
}

}  // namespace
}  // namespace corvane
