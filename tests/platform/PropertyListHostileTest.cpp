#include <filesystem>

#include "tests/platform/PropertyListSamples.h"

namespace corvane {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

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

TEST_F(PropertyListTest, NestsOnlySoFar) {
  // A short way to a value is measured first, a long one leads to it later.
  std::vector<std::string> shared = {binaryDictionary({80, 81, 40, 1}), binaryArray({2})};
  while (shared.size() < 79) shared.push_back(binaryArray({static_cast<unsigned>(shared.size() + 1)}));
  shared.insert(shared.end(), {binaryArray({}), binaryText("a"), binaryText("b")});
  expectRefused("is nested too deeply", {nestedXml(65), nestedOpenStep(65), nestedBinary(65),
                                         nestedXml(9'000), nestedBinary(9'000), binaryFile(shared)});
  for (const auto& bytes : {nestedXml(64), nestedOpenStep(64), nestedBinary(64)})
    EXPECT_THAT(read(bytes), StartsWith("{a: [[")) << bytes;
}

TEST_F(PropertyListTest, HoldsOnlySoMuch) {
  expectRefused("holds too many values",
                {nestedBinary(40, 10), nestedOpenStep(9'000),
                 xmlFile("<array>" + repeated("<true/>", 100'000) + "</array>"),
                 binaryFile({binaryDictionary({3, 1}), binaryArray(std::vector<unsigned>(5'000, 2)),
                             binaryText(std::string(500'000, 'x')), binaryText("a")}),
                 "{a = (" + repeated("b,", 100'000) + ");}", "{" + repeated("a = b;", 5'001) + "}"});
  expectRefused("is malformed", {binaryFile(std::vector<std::string>(20'000, binaryDictionary({})))});
}

TEST_F(PropertyListTest, IsRefusedWhenCutOffAnywhere) {
  for (const auto& bytes : {xmlFile("<dict><key>a</key><string>&amp;<![CDATA[c]]></string></dict>"),
                            binaryFile({binaryDictionary({1, 2}), binaryText("a"), binaryArray({3}),
                                        "\x13" + std::string(8, '\1')}),
                            "{ a = \"b\\\"\"; /* c */ d = (<01>, <*I5>); }"s}) {
    EXPECT_THAT(read(bytes), StartsWith("{a: "));
    for (std::size_t length = 0; length < bytes.size(); ++length)
      EXPECT_THAT(read(bytes.substr(0, length)), HasSubstr(": it ")) << length;
  }
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
TEST_F(PropertyListTest, QuadraticReadersAreNotProvoked) {
  const auto text = [](std::size_t entities) {
    return xmlFile("<dict><key>a</key><string>" + repeated("&lt;", entities) + "</string></dict>");
  };
  const std::string dictionary = "<key>a</key><dict>" + collidingKeys(999) + "</dict>";
  for (const auto& bytes : {text(10'000), xmlFile("<dict>" + repeated(dictionary, 4) + "</dict>")})
    EXPECT_THAT(read(bytes), StartsWith("{a: "));
  expectRefused("holds too many values",
                {text(200'000), xmlFile("<dict>" + collidingKeys(1'001) + "</dict>")});
}

TEST_F(PropertyListTest, OnlyFilesOfAReasonableSizeAreRead) {
  read("<dict>");
  std::filesystem::resize_file(path_, 1'000'000'000);
  EXPECT_THAT(read(), HasSubstr("larger than"));
  const std::pair<const char*, const char*> others[] = {{"/nowhere/Config.plist", ": No such file"},
                                                        {"/dev/zero", ": it is not a file"}};
  for (const auto& [path, problem] : others) {
    EXPECT_FALSE(lists_.readDictionary(path, problem_));
    EXPECT_THAT(problem_, HasSubstr(std::string(path) + problem));
  }
}

}  // namespace
}  // namespace corvane
