#include <gtest/gtest.h>

#include "platform/SystemVolumes.h"
#include "tests/support/ScratchFolder.h"

namespace corvane {
namespace {

TEST(VolumesTest, FollowsChainsOfLinksToTheOriginal) {
  const ScratchFolder home;
  home.write("Datos/Identit\u00E0 di Office/inbox", "");
  const std::pair<const char*, std::string> links[] = {{"third", "Datos/Identit\u00E0 di Office"},
                                                       {"second", home.path("third")},
                                                       {"first", "./second"},
                                                       {"dangling", "missing"},
                                                       {"to dangling", "dangling"},
                                                       {"one", "other"},
                                                       {"other", "one"}};
  for (const auto& [name, target] : links) std::filesystem::create_symlink(target, home.path(name));
  SystemVolumes volumes;
  const std::string original = std::filesystem::canonical(home.path("Datos/Identit\u00E0 di Office"));
  for (const char* name : {"first", "Datos/../second", "./Datos//Identit\u00E0 di Office"})
    EXPECT_EQ(volumes.findOriginalFromAlias(home.path(name)), original) << name;
  for (const char* name : {"missing", "dangling", "to dangling", "one", "dangling/inbox"})
    EXPECT_EQ(volumes.findOriginalFromAlias(home.path(name)), std::nullopt) << name;
  EXPECT_EQ(volumes.findOriginalFromAlias(""), std::nullopt);
}

}  // namespace
}  // namespace corvane
