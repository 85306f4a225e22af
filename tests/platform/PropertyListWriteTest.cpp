#include <gmock/gmock.h>

#include <limits>

#include "platform/SystemPropertyLists.h"
#include "platform/cocoa/FoundationPropertyList.h"
#include "process/Files.h"
#include "process/RunTool.h"
#include "tests/platform/PropertyListSamples.h"
#include "tests/support/ScratchFolder.h"

namespace corvane {
namespace {

using testing::HasSubstr;

const PropertyListDictionary kManifest = {
    {"Clients", {PropertyListValue::Array{{"Mail & <Co>"s}, {"☃"s}, {""s}}}},
    {"Language", {std::int64_t{-3}}},
    {"a\tb", {PropertyListDictionary{{"", {true}}, {"<", {1.5}}}}},
    {"max", {std::numeric_limits<std::int64_t>::max()}},
    {"min", {std::numeric_limits<std::int64_t>::min()}},
    {"none", {PropertyListDictionary{}}},
};
constexpr const char* kDescription =
    "{Clients: [\"Mail & <Co>\", \"☃\", \"\"], Language: -3, a\tb: {: true, <: 1.500000}, max: "
    "9223372036854775807, "
    "min: -9223372036854775808, none: {}}";

class PropertyListWriteTest : public testing::Test {
 protected:
  std::string read(const std::string& path) {
    const auto dictionary = lists_.readDictionary(path, problem_);
    return dictionary ? describe({*dictionary}) : problem_;
  }

  const ScratchFolder folder_;
  const std::string path_ = folder_.path() + "/Contents.plist";
  SystemPropertyLists lists_;
  std::string problem_;
};

TEST_F(PropertyListWriteTest, CanBeReadAgain) {
  ASSERT_TRUE(lists_.writeXml(path_, kManifest, problem_)) << problem_;
  EXPECT_THAT(readFile(path_, 1'000'000, problem_).value_or(""),
              testing::StartsWith("<?xml version=\"1.0\""));
  EXPECT_EQ(read(path_), kDescription);
}

TEST_F(PropertyListWriteTest, CanBeReadByOthers) {
  constexpr const char* plistutil = "/usr/bin/plistutil";
  if (!fileExists(plistutil)) GTEST_SKIP() << "there is no plistutil";
  ASSERT_TRUE(lists_.writeXml(path_, kManifest, problem_)) << problem_;
  const std::string binary = folder_.path() + "/binary.plist";
  ASSERT_EQ(runTool({plistutil, "-i", path_, "-o", binary, "-f", "bin"}).status, 0);
  EXPECT_THAT(readFile(binary, 1'000'000, problem_).value_or(""), testing::StartsWith("bplist00"));
  EXPECT_EQ(read(binary), kDescription);
}

// macOS writes in this way.
TEST_F(PropertyListWriteTest, CanBeReadWhenTheFrameworkWroteIt) {
  const auto xml = xmlFromFoundation(kManifest);
  ASSERT_TRUE(xml);
  ASSERT_TRUE(writeFileAtomically(path_, *xml, problem_));
  EXPECT_EQ(read(path_), kDescription);
}

TEST_F(PropertyListWriteTest, LeavesTheOldFileWhenThereIsNoFormForAValue) {
  ASSERT_TRUE(writeFileAtomically(path_, "old", problem_));
  const PropertyListValue hopeless[] = {{"zero\0"s},
                                        {"\x1B"s},
                                        {"caf\xE9"s},
                                        {PropertyListValue::Other()},
                                        {std::numeric_limits<double>::infinity()}};
  for (const auto& value : hopeless) {
    const PropertyListDictionary dictionary = {{"a", {PropertyListValue::Array{value}}}};
    EXPECT_FALSE(lists_.writeXml(path_, dictionary, problem_)) << describe(value);
    EXPECT_THAT(problem_, HasSubstr("cannot write " + path_));
    EXPECT_FALSE(xmlFromFoundation(dictionary)) << describe(value);
  }
  EXPECT_FALSE(lists_.writeXml(path_, {{"\x01", {true}}}, problem_));
  EXPECT_EQ(readFile(path_, 100, problem_), "old");
  EXPECT_FALSE(lists_.writeXml(folder_.path() + "/nowhere/a", kManifest, problem_));
  EXPECT_THAT(problem_, HasSubstr("/nowhere/a: No such file"));
}

}  // namespace
}  // namespace corvane
