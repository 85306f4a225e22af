// What the sweeps have in common: a user with mail and older archives, and the one judge of a run to which
// something happened.
//
// Each case is two runs in the same home folder: one that is disturbed, and a normal one after it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "tests/support/PrivateSystem.h"
#include "tests/support/VirtualDisplay.h"
#include "tests/system/EngineRun.h"

namespace corvane {

/// How many cases, or how much: `reduced`, or `whole` where CORVANE_SWEEP is "long" in the environment.
[[nodiscard]] unsigned long sweep(unsigned long reduced, unsigned long whole);

/// Ends a test that needs mounts of its own, or several users, where there can be none. Who checks a change
/// (CORVANE_NO_SKIPS in the environment) must not pass over it.
#define NEEDS_PRIVATE_SYSTEM()                                                               \
  ASSERT_TRUE(isPrivateSystem() || !std::getenv("CORVANE_NO_SKIPS")) << "no private system"; \
  if (!isPrivateSystem()) GTEST_SKIP() << "only root may mount; nor may the program lie in /tmp"

class HardeningTest : public testing::Test {
 protected:
  explicit HardeningTest(uid_t user = ::geteuid());
  ~HardeningTest() override;

  /// Writes settings, mail and older archives, where they belong at present.
  void furnish();
  /// Has archives made in /tmp, for the volume that is mounted as /Volumes/corvane.
  void useServer();

  /// Opens a display that lasts until the judge comes, and answers its name.
  [[nodiscard]] std::string openDisplay();
  void closeDisplay();

  /// Puts `commands` before the script's `step`-th use of a tool that changes files; "$tool" is that tool.
  void atStep(unsigned long step, const std::string& commands);
  /// How many such tools have been used.
  [[nodiscard]] unsigned long steps() const;

  /// The judge, after a run that ended with `status`, or never did. Of 1, the log must hold the `cause`; of
  /// 0, there must be a new archive; of SIGKILL, the engine must be the victim and the next run's log hold
  /// the `cause`; of `kJudged`, the caller has looked; all else is a fault. Whatever happened, the older
  /// archives are as they were, all archives are whole, and a normal run, before which `recover` is called,
  /// succeeds and leaves nothing but archives, settings and marks.
  void judge(std::optional<int> status, const std::string& cause, const std::function<void()>& recover = {});

  /// Older archives are as they were, and all archives are whole.
  void expectIntactArchives() const;

  /// All that was logged, with what came before the log was open.
  [[nodiscard]] std::string logged() const { return engine.output() + engine.log(); }

  static constexpr int kJudged = -2;
  EngineRun engine;
  bool engineIsVictim = false;
  std::string archives = engine.destination();
  std::unique_ptr<Volume> server;

 private:
  void expectNewArchive() const;

  std::unique_ptr<VirtualDisplay> display_;
  std::string older_;
  int mails_ = 0;
};

}  // namespace corvane
