#include <gmock/gmock.h>
#include <unistd.h>

#include <fstream>
#include <functional>

#include "platform/SystemPropertyLists.h"
#include "tests/platform/PropertyListSamples.h"
#include "tests/support/ScratchFolder.h"

namespace corvane {
namespace {

using testing::HasSubstr;

class HostilePropertyListTest : public testing::Test {
 protected:
  // Whether `bytes` is read. What takes for ever is stopped by the test runner's limit.
  bool reads(const std::string& bytes) {
    std::ofstream(path_, std::ios::binary) << bytes;
    return readsFile();
  }

  bool readsFile() { return SystemPropertyLists().readDictionary(path_, problem_).has_value(); }

  const ScratchFolder folder_;
  const std::string path_ = folder_.path() + "/Config.plist";
  std::string problem_;
};

std::string nestedXml(std::size_t depth) {
  return xmlFile("<dict><key>a</key>" + repeated("<array>", depth - 1) + repeated("</array>", depth - 1) +
                 "</dict>");
}

std::string nestedOpenStep(std::size_t depth) {
  return "{a = " + repeated("(", depth - 1) + repeated(")", depth - 1) + ";}";
}

// Each array but the last holds the next one `width` times.
std::string nestedBinary(unsigned depth, unsigned width = 1) {
  std::vector<std::string> objects = {binaryDictionary({depth, 1})};
  for (unsigned index = 1; index < depth; ++index)
    objects.push_back(binaryArray(std::vector<unsigned>(index + 1 < depth ? width : 0, index + 1)));
  objects.push_back(binaryText("a"));
  return binaryFile(objects);
}

TEST_F(HostilePropertyListTest, NestsOnlySoFar) {
  const std::function<std::string(unsigned)> formats[] = {nestedXml, nestedOpenStep,
                                                          [](unsigned depth) { return nestedBinary(depth); }};
  for (const auto& nested : formats) {
    EXPECT_TRUE(reads(nested(64))) << problem_;
    EXPECT_FALSE(reads(nested(65)));
    EXPECT_THAT(problem_, HasSubstr("nested too deeply"));
    EXPECT_FALSE(reads(nested(9'000)));
  }
  EXPECT_FALSE(reads(repeated("<array>", 100'000)));
  EXPECT_FALSE(reads("{a=" + repeated("(", 100'000)));
  EXPECT_FALSE(reads("{a=" + repeated("{a=", 100'000)));
  EXPECT_FALSE(reads(nestedBinary(60'000)));
}

// A short way to a value is measured first, a long one leads to it later.
TEST_F(HostilePropertyListTest, CountsTheLongestWayToASharedValue) {
  std::vector<std::string> objects = {binaryDictionary({80, 81, 40, 1}), binaryArray({2})};
  while (objects.size() < 79) objects.push_back(binaryArray({static_cast<unsigned>(objects.size() + 1)}));
  objects.insert(objects.end(), {binaryArray({}), binaryText("a"), binaryText("b")});
  EXPECT_FALSE(reads(binaryFile(objects)));
  EXPECT_THAT(problem_, HasSubstr("nested too deeply"));
}

TEST_F(HostilePropertyListTest, IsRefusedWhenCutOffAnywhere) {
  const std::string whole[] = {xmlFile("<dict><key>a</key><string>&amp;<![CDATA[c]]></string></dict>"),
                               binaryFile({binaryDictionary({1, 2}), binaryText("a"), binaryArray({3}),
                                           "\x13" + std::string(8, '\1')}),
                               "{ a = \"b\\\"\"; /* c */ d = (<01>, <*I5>); }"};
  for (const auto& bytes : whole) {
    EXPECT_TRUE(reads(bytes)) << problem_;
    for (std::size_t length = 0; length < bytes.size(); ++length)
      EXPECT_FALSE(reads(bytes.substr(0, length))) << length;
  }
}

TEST_F(HostilePropertyListTest, SharedValuesDoNotMultiply) {
  EXPECT_FALSE(reads(nestedBinary(40, 10)));
  EXPECT_THAT(problem_, HasSubstr("too many values"));
  std::vector<unsigned> references(5'000, 2);
  EXPECT_FALSE(reads(binaryFile({binaryDictionary({3, 1}), binaryArray(references),
                                 binaryText(std::string(500'000, 'x')), binaryText("a")})));
  EXPECT_THAT(problem_, HasSubstr("too many values"));
}

TEST_F(HostilePropertyListTest, ManyValuesAreTooMany) {
  EXPECT_FALSE(reads(xmlFile("<array>" + repeated("<true/>", 100'000) + "</array>")));
  EXPECT_FALSE(reads("{a = (" + repeated("b,", 100'000) + ");}"));
  EXPECT_FALSE(reads("{" + repeated("a = b;", 5'001) + "}"));
  EXPECT_FALSE(reads(binaryFile(std::vector<std::string>(20'000, binaryDictionary({})))));
}

// Different keys to which libplist gives the same hash.
std::string collidingKeys(unsigned count) {
  std::string keys;
  for (unsigned index = 0; index < count; ++index) {
    keys += "<key>" + std::string(150, 'x');
    for (unsigned bit = 1; bit < 8'192; bit *= 2) keys += (index & bit) != 0 ? "Ez" : "FY";
    keys += "</key><true/>";
  }
  return keys;
}

// libplist moves the rest of the text for each entity, and looks for a key among all of the same hash.
TEST_F(HostilePropertyListTest, QuadraticReadersAreNotProvoked) {
  const auto text = [](std::size_t entities) {
    return xmlFile("<dict><key>a</key><string>" + repeated("&lt;", entities) + "</string></dict>");
  };
  EXPECT_TRUE(reads(text(10'000))) << problem_;
  EXPECT_FALSE(reads(text(200'000)));
  const std::string dictionary = "<key>a</key><dict>" + collidingKeys(999) + "</dict>";
  EXPECT_TRUE(reads(xmlFile("<dict>" + repeated(dictionary, 4) + "</dict>"))) << problem_;
  EXPECT_FALSE(reads(xmlFile("<dict>" + collidingKeys(1'001) + "</dict>")));
}

TEST_F(HostilePropertyListTest, HugeFilesAreNotReadToTheirEnd) {
  std::ofstream(path_) << "<dict>";
  ASSERT_EQ(::truncate(path_.c_str(), 1'000'000'000), 0);
  EXPECT_FALSE(readsFile());
  EXPECT_THAT(problem_, HasSubstr("larger than"));
}

}  // namespace
}  // namespace corvane
