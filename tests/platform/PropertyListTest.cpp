// Property lists made by hand, sound and hostile, before their readers and writer.
#include <gmock/gmock.h>
#include <limits>

#include "platform/SystemPropertyLists.h"
#include "platform/cocoa/FoundationPropertyList.h"
#include "process/Files.h"
#include "tests/support/ScratchFolder.h"

namespace corvane {
namespace {

using namespace std::string_literals;
using testing::AnyOf;
using testing::HasSubstr;
using testing::StartsWith;

// `value` in one line: {a: 1, b: [true, "text", 1.5], c: other}, keys sorted.
std::string describe(const PropertyListValue& value) {
  if (const auto* flag = value.as<bool>()) return *flag ? "true" : "false";
  if (const auto* number = value.as<std::int64_t>()) return std::to_string(*number);
  if (const auto* number = value.as<double>()) return std::to_string(*number);
  if (const auto* text = value.as<std::string>()) return '"' + *text + '"';
  std::string parts;
  const auto add = [&parts](const std::string& part) { parts += (parts.empty() ? "" : ", ") + part; };
  if (const auto* array = value.as<PropertyListValue::Array>()) {
    for (const auto& item : *array) add(describe(item));
    return "[" + parts + "]";
  }
  const auto* dictionary = value.as<PropertyListDictionary>();
  if (!dictionary) return "other";
  for (const auto& [key, item] : *dictionary) add(key + ": " + describe(item));
  return "{" + parts + "}";
}

std::string bigEndian(std::uint64_t number, int width) {
  std::string bytes;
  while (width-- > 0) bytes += static_cast<char>(number >> (8 * width) & 255);
  return bytes;
}

// The marker of an object with its count, in the long form when the short one has no room.
std::string counted(int kind, std::size_t count) {
  if (count < 15) return {static_cast<char>(kind | static_cast<int>(count))};
  return std::string{static_cast<char>(kind | 15), 0x12} + bigEndian(count, 4);
}

std::string binaryText(const std::string& text) { return counted(0x50, text.size()) + text; }

// An array (0xA0), or a dictionary (0xD0) whose `items` are the keys, followed by as many values.
std::string container(int kind, const std::vector<unsigned>& items) {
  std::string object = counted(kind, kind == 0xD0 ? items.size() / 2 : items.size());
  for (const unsigned item : items) object += bigEndian(item, 2);
  return object;
}
std::string binaryArray(const std::vector<unsigned>& items) { return container(0xA0, items); }
std::string binaryDictionary(const std::vector<unsigned>& items) { return container(0xD0, items); }

// The last 32 bytes: the sizes, the number of objects, the root and where the table of offsets is.
std::string binaryTrailer(std::uint64_t objects, std::uint64_t root, std::uint64_t table,
                          std::string sizes = "\x04\x02") {
  return std::string(6, '\0') + sizes + bigEndian(objects, 8) + bigEndian(root, 8) + bigEndian(table, 8);
}

// A file of objects that refer to each other by their index; the first one is the root.
std::string binaryFile(const std::vector<std::string>& objects) {
  std::string bytes = "bplist00";
  std::string table;
  for (const auto& object : objects) {
    table += bigEndian(bytes.size(), 4);
    bytes += object;
  }
  return bytes + table + binaryTrailer(objects.size(), 0, bytes.size());
}

std::string xmlFile(const std::string& root) {
  return R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">)" +
         root + "</plist>";
}

// `part`, `count` times.
std::string repeated(std::string_view part, std::size_t count) {
  std::string text;
  while (count-- > 0) text += part;
  return text;
}

class PropertyListTest : public testing::Test {
 protected:
  // The description of the dictionary in the file, or why there is none. What takes for ever is stopped by
  // the test runner's limit.
  std::string read() {
    const auto dictionary = lists_.readDictionary(path_, problem_);
    return dictionary ? describe({*dictionary}) : problem_;
  }
  std::string read(const std::string& bytes) {
    return writeFileAtomically(path_, bytes, problem_) ? read() : problem_;
  }
  void expectRefused(const std::string& fault, const std::vector<std::string>& files) {
    for (const auto& bytes : files)
      EXPECT_THAT(read(bytes), HasSubstr(path_ + ": it " + fault)) << bytes.substr(0, 300);
  }

  const ScratchFolder folder_;
  const std::string path_ = folder_.path("Config.plist");
  SystemPropertyLists lists_;
  std::string problem_;
};

// macOS reads everything with its framework.
TEST_F(PropertyListTest, ReadsEveryFormat) {
  const std::string values =
      R"({Automount: {Path: "/v", Server: "h"}, Clients: ["Mail", "Entourage"], Number Of Backups: 5, )"
      R"(big: 9223372036854775807, café: "☃😀", d: other, e: "", )"
      R"(l: [], m: {}, n: -7, no: false, r: 1.500000, t: other, yes: true})";
  for (const char* format : {"xml", "binary", "openstep"}) {
    const auto bytes = readTestFile(std::string(SEEDS_FOLDER "/") + format + "/typed.plist");
    EXPECT_EQ(read(bytes), values);
    const auto value = readWithFoundation(bytes);
    EXPECT_EQ(value ? describe(*value) : "nothing", values);
  }
  EXPECT_FALSE(readWithFoundation(binaryFile({binaryArray({0})})));
  EXPECT_FALSE(readWithFoundation("bplist00\xD0" + bigEndian(8, 4) + binaryTrailer(1ULL << 40, 0, 9)));
  EXPECT_FALSE(readWithFoundation(""));
}

TEST_F(PropertyListTest, ReadsWhatIsUnusual) {
  const std::pair<std::string, const char*> files[] = {
      {"\xEF\xBB\xBF<dict><key>a</key><string>b<![CDATA[<&amp;>]]>&#233;&lt;</string><!-- <dict> "
       "--><key></key><true></true></dict>",
       R"({: true, a: "b<&amp;>é<"})"},
      {R"({ Clients = (Mail, "a \"b\" \\ c"); "Number Of Backups" = 5; d = <0fbd 77>; Path = /v/x-1.y:z;
            "\U2603" = "\101"; "" = ""; })",
       R"({: "", Clients: ["Mail", "a "b" \ c"], Number Of Backups: "5", Path: "/v/x-1.y:z", d: other, )"
       R"(☃: "A"})"},
      {xmlFile(
           "<dict><key>a</key><integer> 0x1F </integer><key>b</key><integer>18446744073709551615</integer>"
           "<key>c</key><integer>-9223372036854775808</integer>"
           "<key>d</key><real>+.5</real><key>e</key><real>-5.</real><key>f</key><real>1.5E+3</real></dict>"),
       "{a: 31, b: 18446744073709551616.000000, c: -9223372036854775808, d: 0.500000, e: -5.000000, "
       "f: 1500.000000}"},
      {binaryFile({binaryDictionary({1, 2, 3, 4, 5, 6}), binaryText("a"), binaryText("b"), binaryText("c"),
                   "\x14"s + std::string(8, '\0') + std::string(8, '\xFF'), "\x11\xFF\xFE",
                   "\x22\x3F\xC0\0\0"s}),
       "{a: 18446744073709551616.000000, b: 65534, c: 1.500000}"},
      {"<dict><key>a</key><string>1</string><key>a</key><string>2</string></dict>", R"({a: "2"})"},
      {binaryFile({binaryDictionary({1, 1, 2, 3}), binaryText("a"), "\x10\x01", "\x10\x02"}), "{a: 2}"},
      {"{a = 1; a = 2;}", R"({a: "2"})"}};
  for (const auto& [bytes, expected] : files) EXPECT_EQ(read(bytes), expected) << bytes;
}

std::vector<std::string> xmlFiles(const std::vector<std::string>& values) {
  std::vector<std::string> files;
  for (const auto& value : values) files.push_back(xmlFile("<dict><key>a</key>" + value + "</dict>"));
  return files;
}

TEST_F(PropertyListTest, RefusesUnsoundXml) {
  expectRefused("holds no dictionary", {xmlFile("<array/>")});
  expectRefused("is malformed", {xmlFile(""), xmlFile("<dict/><dict/>"), xmlFile("<dict/>") + "<dict/>",
                                 xmlFile("<dict><key>a</key></dict>")});
  expectRefused("is malformed",
                xmlFiles({"<key>b</key>", "<true/><true/>", "<html/>", "<array></dict>", "<true/>x",
                          "<array x=\">\"/>", "<string>&xxe;</string>", "<string>&ampere;</string>",
                          "<string>&#xD800;</string>", "<string>&#0;</string>"}));
  expectRefused(
      "holds a number that is none",
      xmlFiles({"<integer>five</integer>", "<integer/>", "<integer>010</integer>",
                "<integer>18446744073709551616</integer>", "<integer>-9223372036854775809</integer>",
                "<real>1,5</real>", "<real>-</real>", "<real>.</real>", "<real>e5</real>", "<real>1e</real>",
                "<real>0x1</real>", "<real>nan</real>", "<real>inf</real>", "<real>1e1000</real>"}));
  expectRefused("is not a text in UTF-8", xmlFiles({"<string>a\0b</string>"s, "<string>caf\xE9</string>"}));
  expectRefused("is not a text in UTF-8", {"\xFE\xFF\0<\0d\0i\0c\0t\0/\0>"s});
  expectRefused("has a declaration that is not supported",
                {R"(<!DOCTYPE plist [<!ENTITY a "aaaa"><!ENTITY b "&a;&a;&a;">]><dict/>)",
                 R"(<!DOCTYPE plist [<!ENTITY a SYSTEM "/etc/passwd">]><dict/>)",
                 R"(<?xml version="1.0?><dict/><?x "?><dict/>)",
                 "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><dict/>"});
}

TEST_F(PropertyListTest, RefusesUnsoundBinaries) {
  expectRefused("holds no dictionary", {binaryFile({binaryArray({})})});
  expectRefused("holds a value that contains itself",
                {binaryFile({binaryDictionary({1, 0}), binaryText("a")})});
  expectRefused("is malformed", {"bplist00", binaryFile({binaryDictionary({1, 1}), "\x08"})});
  for (const auto& trailer :
       {binaryTrailer(0, 0, 9), binaryTrailer(0x4000000000000001, 0, 9), binaryTrailer(1, 1, 9),
        binaryTrailer(1, 0, ~0ULL), binaryTrailer(1, 0, 7), binaryTrailer(2, 0, 9),
        binaryTrailer(1, 0, 9, "\0\2"s), binaryTrailer(1, 0, 9, "\4\xFF")})
    expectRefused("is malformed", {"bplist00\xD0" + bigEndian(8, 4) + trailer});
  // A reference to nowhere, counts that are too large or no numbers, null, a set, integers that are cut off
  // or too wide, texts with a zero or in Latin-1.
  for (const auto& value : {binaryArray({3}), counted(0x50, 1 << 30) + "a",
                            "\x6F\x13\x80" + std::string(7, '\0'), "\x5F\x22\0\0\0\1a"s, "\xAF\x11\x40\x01"s,
                            "\0"s, "\xC0"s, "\x13\1"s, "\x14\1" + std::string(15, '\0'), binaryText("a\0b"s),
                            counted(0x60, 2) + "\0a\0\0"s, binaryText("caf\xE9")})
    expectRefused("is malformed", {binaryFile({binaryDictionary({1, 2}), binaryText("a"), value})});
}

TEST_F(PropertyListTest, RefusesUnsoundOpenStep) {
  expectRefused("is empty", {""});
  expectRefused("holds no dictionary", {"(a)"});
  expectRefused("is malformed", {"?", "not a property list", "{a = b;} c", "{a = ;}", "{a = b}",
                                 "{a = (b,,c);}", "{(a) = b;}", "{<01> = b;}", "{a = (b};)", "{a = <01;}",
                                 "{a = <*BX>;}", "{a = \"\\Ud83d\";}"});
  expectRefused("is not complete", {"{a = \"b;}\\\"", "{a = b;} /* c"});
  expectRefused("holds a number that is none", {"{a = <*Ifive>;}", "{a = <*I0x5>;}"});
  expectRefused("is not a text in UTF-8", {"{a = \"\0\";}"s, "\1\2\3\4", "{a = \"caf\xE9\";}"});
}

const PropertyListDictionary kManifest = {
    {"Clients", {PropertyListValue::Array{{"Mail & <Co>"s}, {"☃"s}, {""s}}}},
    {"Language", {std::int64_t{-3}}},
    {"a\tb", {PropertyListDictionary{{"", {true}}, {"<", {1.5}}}}},
    {"max", {std::numeric_limits<std::int64_t>::max()}},
    {"min", {std::numeric_limits<std::int64_t>::min()}},
    {"none", {PropertyListDictionary{}}},
};

// Each by the other: the library's writer is read by the framework, and the framework's, which is the one
// of macOS, by the library.
TEST_F(PropertyListTest, WhatIsWrittenCanBeReadByOthers) {
  const std::string description =
      "{Clients: [\"Mail & <Co>\", \"☃\", \"\"], Language: -3, a\tb: {: true, <: 1.500000}, "
      "max: 9223372036854775807, min: -9223372036854775808, none: {}}";
  ASSERT_TRUE(lists_.writeXml(path_, kManifest, problem_)) << problem_;
  EXPECT_EQ(read(), description);
  const std::string xml = folder_.read("Config.plist");
  EXPECT_THAT(xml, StartsWith("<?xml version=\"1.0\""));
  const auto value = readWithFoundation(xml);
  EXPECT_EQ(value ? describe(*value) : "nothing", description);
  EXPECT_EQ(read(xmlFromFoundation(kManifest).value_or("")), description);
}

TEST_F(PropertyListTest, LeavesTheOldFileWhenThereIsNoFormForAValue) {
  read("old");
  const PropertyListValue hopeless[] = {{"zero\0"s},
                                        {"\x1B"s},
                                        {"caf\xE9"s},
                                        {PropertyListValue::Other()},
                                        {std::numeric_limits<double>::infinity()},
                                        {PropertyListDictionary{{"\x01", {true}}}}};
  for (const auto& value : hopeless) {
    const PropertyListDictionary dictionary = {{"a", {PropertyListValue::Array{value}}}};
    EXPECT_FALSE(lists_.writeXml(path_, dictionary, problem_)) << describe(value);
    EXPECT_THAT(problem_, HasSubstr("cannot write " + path_));
    EXPECT_FALSE(xmlFromFoundation(dictionary)) << describe(value);
  }
  EXPECT_EQ(folder_.read("Config.plist"), "old");
}

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

// The seeds of the fuzzers, and what these once failed on.
TEST_F(PropertyListTest, SurvivesWhatFuzzersFound) {
  int seeds = 0;
  for (const auto& seed : std::filesystem::recursive_directory_iterator(SEEDS_FOLDER)) {
    if (!seed.is_regular_file()) continue;
    ++seeds;
    EXPECT_THAT(read(readTestFile(seed.path())), AnyOf(StartsWith("{"), HasSubstr(path_ + ": it ")))
        << seed.path();
  }
  EXPECT_GE(seeds, 6);
}

}  // namespace
}  // namespace corvane
