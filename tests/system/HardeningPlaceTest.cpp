// Runs whose destination, staging, support folder or log volume fills up, or goes away.

#include <sys/mount.h>
#include <unistd.h>

#include <csignal>
#include <memory>

#include "process/Files.h"
#include "process/RunTool.h"
#include "tests/support/WaitFor.h"
#include "tests/system/HardeningTest.h"

namespace corvane {
namespace {

using testing::AllOf;
using testing::HasSubstr;

constexpr unsigned long kPlenty = 64UL << 20U;

struct Place {
  const char* name;
  const char* path;    // below the home folder, or absolute
  unsigned long most;  // bytes that a run needs there, and a little more
  bool isServer = false;
  bool mustSucceed = false;
};

class FullVolumeTest : public HardeningTest, public testing::WithParamInterface<Place> {
 protected:
  // Runs with so little left, and then with plenty.
  void fill(unsigned long bytes, unsigned long entries) {
    SCOPED_TRACE(std::to_string(bytes) + " bytes, " + std::to_string(entries) + " entries");
    volume_->leaveFree(bytes, entries);
    const auto status = engine.run();
    EXPECT_TRUE(status == 0 || !GetParam().mustSucceed);
    judge(status, "No space left on device", [this] { volume_->leaveFree(kPlenty, 1000); });
  }

  void mountVolume() {
    const std::string name = GetParam().path;
    const std::string path = name.starts_with('/') ? name : engine.home() + "/" + name;
    makeFolders(path);
    volume_ = std::make_unique<Volume>(path);
    if (GetParam().isServer) {
      useServer();
    } else {
      furnish();
    }
  }

 private:
  std::unique_ptr<Volume> volume_;
};

TEST_P(FullVolumeTest, KeepsWhatIsThere) {
  NEEDS_PRIVATE_SYSTEM();
  mountVolume();
  const unsigned long sizes = sweep(3, 20);
  for (unsigned long size = 0; size <= sizes; ++size) fill(size * GetParam().most / sizes, 1000);
  for (unsigned long entries = 0; entries < 10; entries += sweep(3, 1)) fill(kPlenty, entries);
}

INSTANTIATE_TEST_SUITE_P(
    Places, FullVolumeTest,
    testing::Values(Place{"Destination", "Backups", 900'000}, Place{"Staging", "/tmp", 900'000, true},
                    Place{"Support", "Library/Application Support/Quillon/Corvane", 20'000},
                    Place{"Log", "Library/Logs", 20'000, false, true}),
    [](const auto& test) { return test.param.name; });

// The script does not look at the result of the copy: the log at least shows its message.
TEST_F(HardeningTest, AFullServerIsNamedInTheLog) {
  NEEDS_PRIVATE_SYSTEM();
  useServer();
  removeFile(archives + "/Daily-Mail.qvb");
  server->leaveFree(100'000, 10);
  EXPECT_EQ(engine.run(), 0);
  EXPECT_THAT(engine.log(), AllOf(HasSubstr("error writing '/Volumes/corvane/Daily-Mail.qvb'"),
                                  HasSubstr("No space left on device")));
  server->leaveFree(kPlenty, 10);
  judge(engine.run(), "");
}

struct Loss {
  const char* name;
  const char* commands;
  const char* cause;
  const char* recovery;
};

class LostDestinationTest : public HardeningTest, public testing::WithParamInterface<Loss> {};

// The destination is a folder of a disk that is shown at that place.
TEST_P(LostDestinationTest, IsWorkedAtAgainOnceItIsBack) {
  NEEDS_PRIVATE_SYSTEM();
  const auto shell = [this](const std::string& commands) {
    EXPECT_EQ(runTool({"/bin/sh", "-c", "cd '" + engine.home() + "' && " + commands}).status, 0) << commands;
  };
  shell("rm Backups/* && mkdir disk trap && mount -t tmpfs tmpfs disk && mount --bind disk Backups");
  furnish();
  unsigned long step = 0;
  for (bool reached = true; reached; step += sweep(3, 1)) {
    SCOPED_TRACE(step);
    if (step == 0) shell(GetParam().commands);
    atStep(step, "cd \"$HOME\" && " + std::string(GetParam().commands));
    auto status = engine.run();
    EXPECT_TRUE(status == 0 || status == 1);
    if (status == 0) status = kJudged;  // the new archive can be wherever the path led to
    reached = step == 0 || steps() >= step;
    EXPECT_TRUE(reached || step > 8);
    if (reached) shell(GetParam().recovery);
    judge(status, step == 0 ? "Checking backup destination..." : GetParam().cause);
  }
  shell("umount Backups disk");
}

constexpr const char* kMissing = "No such file or directory";

INSTANTIATE_TEST_SUITE_P(
    Losses, LostDestinationTest,
    testing::Values(Loss{"Gone", "umount -l Backups && rmdir Backups", kMissing,
                         "rm -rf Backups && mkdir Backups && mount --bind disk Backups"},
                    Loss{"ReadOnly", "mount -o remount,ro,bind Backups", "Read-only file system",
                         "mount -o remount,rw,bind Backups"},
                    Loss{"LinkToElsewhere", "umount -l Backups && rmdir Backups && ln -s trap Backups",
                         kMissing, "rm -rf Backups trap && mkdir trap Backups && mount --bind disk Backups"},
                    Loss{"Unmounted", "umount -l Backups", kMissing,
                         "rm -rf Backups/* Backups/.??* && mount --bind disk Backups"}),
    [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace corvane
