#include "tests/system/HardeningTest.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <random>
#include <utility>

#include "process/Files.h"
#include "process/RunTool.h"

namespace corvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* kOlder = "/Monday-Mail.qvb";
constexpr const char* kNew = "/Daily-Mail.qvb";
constexpr const char* kTools[] = {"mkdir", "ditto", "mv", "rm", "touch"};

// What does not get smaller in an archive.
std::string noise(std::size_t size) {
  std::mt19937 generator(1);
  std::string bytes(size, '\0');
  for (auto& byte : bytes) byte = static_cast<char>(generator());
  return bytes;
}

}  // namespace

unsigned long sweep(unsigned long reduced, unsigned long whole) {
  const char* length = std::getenv("CORVANE_SWEEP");
  return length && std::string(length) == "long" ? whole : reduced;
}

HardeningTest::HardeningTest(uid_t user) : engine(user) {
  engine.installTool("sleep", "exit 0\n");
  furnish();
}

HardeningTest::~HardeningTest() {
  if (std::exchange(server, nullptr)) ::rmdir(archives.c_str());
}

void HardeningTest::furnish() {
  makeFolders(archives);
  engine.configureMail();
  writeTestFile(engine.library() + "/Mail/V9/Archive.mbox/table", noise(256 * 1024));
  engine.nameArchives("Daily-(Email Client).qvb");
  for (const char* name : {kOlder, kNew}) {
    EXPECT_EQ(runTool({DITTO_PATH, "-ck", engine.support(), archives + name}).status, 0);
  }
  older_ = readTestFile(archives + kOlder);
}

void HardeningTest::useServer() {
  archives = "/Volumes/corvane";
  makeFolders(archives);
  server = std::make_unique<Volume>(archives);
  furnish();
  writeTestFile(engine.configuration(),
                xmlPropertyList("<key>Clients</key><array><string>Apple Mail</string></array>"
                                "<key>Destination</key><string>/Volumes/corvane</string>"
                                "<key>Automount</key><dict><key>Path</key><string>corvane</string></dict>"));
}

std::string HardeningTest::openDisplay() {
  display_ = std::make_unique<VirtualDisplay>();
  EXPECT_EQ(display_->problem(), "");
  return display_->name();
}

void HardeningTest::closeDisplay() {
  if (std::exchange(display_, nullptr) && isPrivateSystem()) removeTree("/tmp/.X11-unix");
}

void HardeningTest::atStep(unsigned long step, const std::string& commands) {
  removeFile(engine.home() + "/steps");
  for (const std::string name : kTools) {
    const std::string tool = name == "ditto" ? DITTO_PATH : "/usr/bin/" + name;
    engine.installTool(name, "tool=" + tool + "\necho >>\"$HOME/steps\"\n[ $(wc -l <\"$HOME/steps\") -ne " +
                                 std::to_string(step) + " ] || {\nPATH=/usr/bin:/bin\n" + commands +
                                 "\n}\nexec \"$tool\" \"$@\"\n");
  }
}

unsigned long HardeningTest::steps() const { return readTestFile(engine.home() + "/steps").size(); }

void HardeningTest::judge(std::optional<int> status, const std::string& cause,
                          const std::function<void()>& recover) {
  ASSERT_TRUE(status) << "the run has not ended";
  const bool isKilled = status == 128 + SIGKILL;
  EXPECT_TRUE(status == 0 || status == 1 || status == kJudged || (isKilled && engineIsVictim)) << *status;
  if (status == 0) expectNewArchive();
  if (status == 1) {
    EXPECT_THAT(logged(), HasSubstr(cause));
  }
  if (recover) recover();
  closeDisplay();
  for (const std::string tool : kTools) EXPECT_TRUE(removeFile(engine.home() + "/bin/" + tool));
  removeFile(engine.library() + "/Logs/Corvane.log");
  removeFile(engine.home() + "/output");
  expectIntactArchives();

  writeTestFile(engine.library() + "/Mail/V9/INBOX.mbox/new.emlx", "number " + std::to_string(++mails_));
  EXPECT_EQ(engine.run(), 0);
  expectIntactArchives();
  expectNewArchive();
  if (isKilled) {
    EXPECT_THAT(engine.log(), HasSubstr(cause));
  }
  EXPECT_THAT(namesIn(archives), ElementsAre(kNew + 1, kOlder + 1));
  EXPECT_THAT(namesIn(engine.support()), ElementsAre(".corvane.lock", "Config.plist", "lastbackup"));
  if (isPrivateSystem()) {
    EXPECT_THAT(namesIn("/tmp"), ElementsAre());
  }
  removeFile(engine.library() + "/Logs/Corvane.log");
}

void HardeningTest::expectIntactArchives() const {
  EXPECT_TRUE(readTestFile(archives + kOlder) == older_);
  for (const auto& name : namesIn(archives)) {
    if (!name.ends_with(".qvb") || name == "corvane.qvb") continue;
    const auto unzip = runTool({"/usr/bin/unzip", "-tqq", archives + "/" + name});
    EXPECT_EQ(unzip.status, 0) << name << ": " << unzip.output;
  }
}

void HardeningTest::expectNewArchive() const {
  const ScratchFolder folder;
  const std::string out = folder.path();
  EXPECT_EQ(runTool({"/usr/bin/unzip", "-qq", archives + kNew, "-d", out}).status, 0);
  EXPECT_EQ(runTool({"/usr/bin/unzip", "-qq^", out + "/Mail/Mail.zip", "-d", out + "/data"}).status, 0);
  EXPECT_EQ(runTool({"/usr/bin/diff", "-r", engine.library() + "/Mail", out + "/data"}).output, "");
}

}  // namespace corvane

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  corvane::enterPrivateSystem(ENGINE_PATH);
  return RUN_ALL_TESTS();
}
