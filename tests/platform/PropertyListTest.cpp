#include <limits>

#include "platform/cocoa/FoundationPropertyList.h"
#include "tests/platform/PropertyListSamples.h"

namespace corvane {
namespace {

using testing::HasSubstr;

const std::string kTypedValues =
    R"({a: {k: "h"}, b: ["Mail", "a b"], c: "☃ & <", d: 9223372036854775807, e: -7, f: false, g: [], )"
    R"(h: 5, i: 1.500000, j: other, k: true, é: "x"})";

const std::string kXml = xmlFile(R"(<dict>
  <key>a</key><dict><key>k</key><string>h</string></dict>
  <key>b</key><array><string>Mail</string><string>a b</string></array>
  <key>c</key><string>☃ &amp; &lt;</string> <!-- <dict> -->
  <key>d</key><integer>9223372036854775807</integer><key>e</key><integer>-7</integer>
  <key>f</key><false/><key>g</key><array/><key>h</key><integer> 5 </integer><key>i</key><real>1.5</real>
  <key>j</key><date>2007-01-02T03:04:05Z</date><key>k</key><true/><key>&#233;</key><string>x</string>
</dict>)");

std::string typedBinary() {
  std::vector<unsigned> items;
  for (unsigned index = 1; index <= 24; ++index) items.push_back(index);
  std::vector<std::string> objects = {binaryDictionary(items)};
  for (const char* key : {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k"})
    objects.push_back(binaryText(key));
  objects.insert(objects.end(),
                 {counted(0x60, 1) + "\0\xE9"s, binaryDictionary({11, 25}), binaryArray({26, 27}),
                  counted(0x60, 5) + "\x26\x03\0 \0&\0 \0<"s, "\x13\x7F" + std::string(7, '\xFF'),
                  "\x13" + std::string(7, '\xFF') + "\xF9", "\x08", binaryArray({}), "\x10\x05",
                  "\x22\x3F\xC0\0\0"s, "\x33"s + std::string(8, '\0'), "\x09", binaryText("x"),
                  binaryText("h"), binaryText("Mail"), binaryText("a b")});
  return binaryFile(objects);
}

const std::string kGnustep = R"({ /* the server */ a = { k = h; }; b = (Mail, "a b", ); c = "☃ & <"; // { no
  d = <*I9223372036854775807>; e = <*I-7>; f = <*BN>; g = (); h = <*I5>; i = <*R1.5>;
  j = <*D2007-01-02 03:04:05 +0000>; k = <*BY>; "é" = x; })";

// macOS reads everything with its framework.
TEST_F(PropertyListTest, ReadsEveryFormat) {
  for (const auto& bytes : {kXml, typedBinary(), kGnustep}) {
    EXPECT_EQ(read(bytes), kTypedValues);
    const auto value = readWithFoundation(bytes);
    EXPECT_EQ(value ? describe(*value) : "nothing", kTypedValues);
  }
  EXPECT_FALSE(readWithFoundation(binaryFile({binaryArray({0})})));
  EXPECT_FALSE(readWithFoundation("bplist00\xD0" + bigEndian(8, 4) + binaryTrailer(1ULL << 40, 0, 9)));
  EXPECT_FALSE(readWithFoundation(""));
}

TEST_F(PropertyListTest, ReadsWhatIsUnusual) {
  const std::pair<std::string, const char*> files[] = {
      {"\xEF\xBB\xBF<dict><key>a</key><string>b<![CDATA[<&amp;>]]>c</string><key></key><true></true></dict>",
       R"({: true, a: "b<&amp;>c"})"},
      {R"({ Clients = (Mail, "a \"b\" \\ c"); "Number Of Backups" = 5; d = <0fbd 77>; Path = /v/x-1.y:z;
            "\U2603" = "\101"; "" = ""; })",
       R"({: "", Clients: ["Mail", "a "b" \ c"], Number Of Backups: "5", Path: "/v/x-1.y:z", d: other, ☃: "A"})"},
      {xmlFile(
           "<dict><key>a</key><integer>0x1F</integer><key>b</key><integer>18446744073709551615</integer>"
           "<key>c</key><integer>-9223372036854775808</integer>"
           "<key>d</key><real>+.5</real><key>e</key><real>-5.</real><key>f</key><real>1.5E+3</real></dict>"),
       "{a: 31, b: 18446744073709551616.000000, c: -9223372036854775808, d: 0.500000, e: -5.000000, "
       "f: 1500.000000}"},
      {binaryFile({binaryDictionary({1, 2, 3, 4}), binaryText("a"), binaryText("b"),
                   "\x14"s + std::string(8, '\0') + std::string(8, '\xFF'), "\x11\xFF\xFE"}),
       "{a: 18446744073709551616.000000, b: 65534}"},
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
  EXPECT_THAT(xml, testing::StartsWith("<?xml version=\"1.0\""));
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
  EXPECT_FALSE(lists_.writeXml(folder_.path("nowhere/a"), kManifest, problem_));
  EXPECT_THAT(problem_, HasSubstr("/nowhere/a: No such file"));
}

}  // namespace
}  // namespace corvane
