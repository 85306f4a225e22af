#include <gmock/gmock.h>

#include "platform/SystemPropertyLists.h"
#include "platform/cocoa/FoundationPropertyList.h"
#include "platform/plist/Texts.h"
#include "process/Files.h"
#include "tests/platform/PropertyListSamples.h"
#include "tests/support/ScratchFolder.h"

namespace corvane {
namespace {

using testing::AllOf;
using testing::HasSubstr;

struct FileCase {
  std::string name;
  std::string bytes;
  std::string expected;  // the description of the dictionary, or a part of the problem
};

void PrintTo(const FileCase& file, std::ostream* stream) { *stream << file.name; }

std::string nameOf(const testing::TestParamInfo<FileCase>& info) { return info.param.name; }

const std::string kTypedValues =
    R"({Automount: {Server: "h"}, Clients: ["Mail", "Microsoft Entourage"], café: "☃ & <", )"
    R"(large: 9223372036854775807, negative: -7, no: false, none: [], number: 5, ratio: 1.500000, )"
    R"(when: other, yes: true})";

const std::string kXml = xmlFile(R"(<dict>
  <key>Automount</key><dict><key>Server</key><string>h</string></dict>
  <key>Clients</key><array><string>Mail</string><string>Microsoft Entourage</string></array>
  <key>caf&#233;</key><string>☃ &amp; &lt;</string> <!-- <dict> -->
  <key>large</key><integer>9223372036854775807</integer><key>negative</key><integer>-7</integer>
  <key>no</key><false/><key>none</key><array/><key>number</key><integer> 5 </integer>
  <key>ratio</key><real>1.5</real><key>when</key><date>2007-01-02T03:04:05Z</date><key>yes</key><true/>
</dict>)");

const std::string kBinary = binaryFile(
    {binaryDictionary({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22}),
     binaryText("Automount"),
     binaryText("Clients"),
     counted(0x60, 4) + "\0c\0a\0f\0\xE9"s,
     binaryText("large"),
     binaryText("negative"),
     binaryText("no"),
     binaryText("none"),
     binaryText("number"),
     binaryText("ratio"),
     binaryText("when"),
     binaryText("yes"),
     binaryDictionary({23, 24}),
     binaryArray({25, 26}),
     counted(0x60, 5) + "\x26\x03\0 \0&\0 \0<"s,
     "\x13\x7F" + std::string(7, '\xFF'),
     "\x13" + std::string(7, '\xFF') + "\xF9",
     "\x08",
     binaryArray({}),
     "\x10\x05",
     "\x22\x3F\xC0\0\0"s,
     "\x33"s + std::string(8, '\0'),
     "\x09",
     binaryText("Server"),
     binaryText("h"),
     binaryText("Mail"),
     binaryText("Microsoft Entourage")});

const std::string kGnustep = R"({ /* the server */ Automount = { Server = h; };
  Clients = (Mail, "Microsoft Entourage", ); "café" = "☃ & <"; // { not a bracket
  large = <*I9223372036854775807>; negative = <*I-7>; no = <*BN>; none = (); number = <*I5>; ratio = <*R1.5>;
  when = <*D2007-01-02 03:04:05 +0000>; yes = <*BY>; })";

class SoundFileTest : public testing::TestWithParam<FileCase> {};

TEST_P(SoundFileTest, IsRead) {
  const ScratchFolder folder;
  const std::string path = folder.path() + "/Config.plist";
  std::string problem;
  ASSERT_TRUE(writeFileAtomically(path, GetParam().bytes, problem));
  const auto dictionary = SystemPropertyLists().readDictionary(path, problem);
  ASSERT_TRUE(dictionary) << problem;
  EXPECT_EQ(describe({*dictionary}), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Formats, SoundFileTest,
    testing::Values(
        FileCase{"Xml", kXml, kTypedValues}, FileCase{"Binary", kBinary, kTypedValues},
        FileCase{"Gnustep", kGnustep, kTypedValues},
        FileCase{"XmlWithByteOrderMark", "\xEF\xBB\xBF" + kXml, kTypedValues},
        FileCase{"OpenStep", R"({ Clients = (Mail, "a \"b\" \\ c"); "Number Of Backups" = 5; d = <0fbd 77>;
                                  Path = /v/x-1.y:z; "\U2603" = "\101"; "" = ""; })",
                 R"({: "", Clients: ["Mail", "a "b" \ c"], Number Of Backups: "5", Path: "/v/x-1.y:z", )"
                 R"(d: other, ☃: "A"})"},
        FileCase{"BareXml",
                 "<dict><key>a</key><string>b<![CDATA[<&amp;>]]>c</string><key></key><true></true></dict>",
                 R"({: true, a: "b<&amp;>c"})"},
        FileCase{"XmlNumbers",
                 xmlFile("<dict><key>a</key><integer>0x1F</integer><key>b</key><integer>18446744073709551615"
                         "</integer><key>c</key><integer>-9223372036854775808</integer></dict>"),
                 "{a: 31, b: 18446744073709551616.000000, c: -9223372036854775808}"},
        FileCase{"BinaryNumbers",
                 binaryFile({binaryDictionary({1, 2, 3, 4}), binaryText("a"), binaryText("b"),
                             "\x14"s + std::string(8, '\0') + std::string(8, '\xFF'), "\x11\xFF\xFE"}),
                 "{a: 18446744073709551616.000000, b: 65534}"},
        FileCase{"RepeatedKeyInXml",
                 "<dict><key>a</key><string>1</string><key>a</key><string>2</string></dict>", R"({a: "2"})"},
        FileCase{"RepeatedKeyInBinary",
                 binaryFile({binaryDictionary({1, 1, 2, 3}), binaryText("a"), "\x10\x01", "\x10\x02"}),
                 "{a: 2}"},
        FileCase{"RepeatedKeyInOpenStep", "{a = 1; a = 2;}", R"({a: "2"})"}),
    nameOf);

class UnsoundFileTest : public testing::TestWithParam<FileCase> {};

TEST_P(UnsoundFileTest, IsRefusedByName) {
  const ScratchFolder folder;
  const std::string path = folder.path() + "/Config.plist";
  std::string problem;
  ASSERT_TRUE(writeFileAtomically(path, GetParam().bytes, problem));
  EXPECT_FALSE(SystemPropertyLists().readDictionary(path, problem));
  EXPECT_THAT(problem, AllOf(HasSubstr(path + ": it "), HasSubstr(GetParam().expected)));
}

FileCase badXml(const std::string& name, const std::string& value, const std::string& expected) {
  return {name, xmlFile("<dict><key>a</key>" + value + "</dict>"), expected};
}

INSTANTIATE_TEST_SUITE_P(
    Xml, UnsoundFileTest,
    testing::Values(
        FileCase{"RootArray", xmlFile("<array/>"), "holds no dictionary"},
        FileCase{"EmptyRoot", xmlFile(""), "is malformed"},
        FileCase{"TwoRoots", xmlFile("<dict/><dict/>"), "is malformed"},
        FileCase{"AfterTheEnd", xmlFile("<dict/>") + "<dict/>", "is malformed"},
        FileCase{"KeyWithoutValue", xmlFile("<dict><key>a</key></dict>"), "is malformed"},
        badXml("KeyAsValue", "<key>b</key>", "is malformed"),
        badXml("ValueWithoutKey", "<true/><true/>", "is malformed"),
        badXml("Html", "<html/>", "is malformed"), badXml("Crossed", "<array></dict>", "is malformed"),
        badXml("TextBetween", "<true/>x", "is malformed"),
        badXml("QuotedBracket", "<array x=\">\"/>", "is malformed"),
        badXml("WordAsNumber", "<integer>five</integer>", "number"),
        badXml("NoNumber", "<integer/>", "number"), badXml("OctalLooks", "<integer>010</integer>", "number"),
        badXml("NumberTooLarge", "<integer>18446744073709551616</integer>", "number"),
        badXml("NumberTooSmall", "<integer>-9223372036854775809</integer>", "number"),
        badXml("WordAsReal", "<real>1,5</real>", "number"),
        badXml("UnknownEntity", "<string>&xxe;</string>", "is malformed"),
        badXml("LongEntity", "<string>&ampere;</string>", "is malformed"),
        badXml("HalfASurrogatePair", "<string>&#xD800;</string>", "is malformed"),
        badXml("ZeroEntity", "<string>&#0;</string>", "is malformed"),
        badXml("ZeroByte", "<string>a\0b</string>"s, "UTF-8"),
        badXml("Latin1", "<string>caf\xE9</string>", "UTF-8"),
        FileCase{"EntityBomb", R"(<!DOCTYPE plist [<!ENTITY a "aaaa"><!ENTITY b "&a;&a;&a;">]><dict/>)",
                 "declaration"},
        FileCase{"ExternalEntity", R"(<!DOCTYPE plist [<!ENTITY a SYSTEM "/etc/passwd">]><dict/>)",
                 "declaration"},
        FileCase{"HiddenInQuotes", R"(<?xml version="1.0?><dict/><?x "?><dict/>)", "declaration"},
        FileCase{"OtherEncoding", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><dict/>", "declaration"},
        FileCase{"Utf16", "\xFE\xFF\0<\0d\0i\0c\0t\0/\0>"s, "UTF-8"}),
    nameOf);

FileCase badBinary(const std::string& name, const std::string& value,
                   const std::string& expected = "is malformed") {
  return {name, binaryFile({binaryDictionary({1, 2}), binaryText("a"), value}), expected};
}

FileCase badTrailer(const std::string& name, const std::string& trailer) {
  return {name, "bplist00\xD0" + bigEndian(8, 4) + trailer, "is malformed"};
}

INSTANTIATE_TEST_SUITE_P(
    Binary, UnsoundFileTest,
    testing::Values(
        FileCase{"MagicOnly", "bplist00", "is malformed"}, badTrailer("NoObjects", binaryTrailer(0, 0, 9)),
        badTrailer("CountlessObjects", binaryTrailer(0x4000000000000001, 0, 9)),
        badTrailer("RootOutside", binaryTrailer(1, 1, 9)),
        badTrailer("TableOutside", binaryTrailer(1, 0, ~0ULL)),
        badTrailer("TableInHeader", binaryTrailer(1, 0, 7)),
        badTrailer("TableTooLong", binaryTrailer(2, 0, 9)),
        badTrailer("OffsetsOfNoSize", binaryTrailer(1, 0, 9, "\0\2"s)),
        badTrailer("ReferencesTooWide", binaryTrailer(1, 0, 9, "\4\xFF")),
        FileCase{"RootArray", binaryFile({binaryArray({})}), "holds no dictionary"},
        FileCase{"ContainsItself", binaryFile({binaryDictionary({1, 0}), binaryText("a")}),
                 "contains itself"},
        FileCase{"KeyNoText", binaryFile({binaryDictionary({1, 1}), "\x08"}), "is malformed"},
        badBinary("ReferenceOutside", binaryArray({3})),
        badBinary("TextTooLong", counted(0x50, 1 << 30) + "a"),
        badBinary("LengthOverflows", "\x6F\x13\x80" + std::string(7, '\0')),
        badBinary("LengthOfNoNumber", "\x5F\x22\0\0\0\1a"s), badBinary("ArrayTooLong", "\xAF\x11\x40\x01"),
        badBinary("Null", "\0"s), badBinary("Set", "\xC0"), badBinary("IntegerCutOff", "\x13\1"),
        badBinary("IntegerOf128Bits", "\x14\1" + std::string(15, '\0')),
        badBinary("ZeroInText", binaryText("a\0b"s)), badBinary("ZeroInUtf16", counted(0x60, 2) + "\0a\0\0"s),
        badBinary("Latin1", binaryText("caf\xE9"))),
    nameOf);

INSTANTIATE_TEST_SUITE_P(OpenStep, UnsoundFileTest,
                         testing::Values(FileCase{"Empty", "", "is empty"},
                                         FileCase{"Question", "?", "is malformed"},
                                         FileCase{"Words", "not a property list", "is malformed"},
                                         FileCase{"RootArray", "(a)", "holds no dictionary"},
                                         FileCase{"AfterTheEnd", "{a = b;} c", "is malformed"},
                                         FileCase{"NoValue", "{a = ;}", "is malformed"},
                                         FileCase{"NoSemicolon", "{a = b}", "is malformed"},
                                         FileCase{"TwoCommas", "{a = (b,,c);}", "is malformed"},
                                         FileCase{"ArrayAsKey", "{(a) = b;}", "is malformed"},
                                         FileCase{"DataAsKey", "{<01> = b;}", "is malformed"},
                                         FileCase{"Crossed", "{a = (b};)", "is malformed"},
                                         FileCase{"OpenQuote", "{a = \"b;}\\\"", "not complete"},
                                         FileCase{"OpenComment", "{a = b;} /* c", "not complete"},
                                         FileCase{"OpenData", "{a = <01;}", "malformed"},
                                         FileCase{"WordAsNumber", "{a = <*Ifive>;}", "number"},
                                         FileCase{"HexadecimalNumber", "{a = <*I0x5>;}", "number"},
                                         FileCase{"WordAsFlag", "{a = <*BX>;}", "is malformed"},
                                         FileCase{"HalfASurrogatePair", "{a = \"\\Ud83d\";}", "is malformed"},
                                         FileCase{"ZeroByte", "{a = \"\0\";}"s, "UTF-8"},
                                         FileCase{"OtherBinary", "\1\2\3\4", "UTF-8"},
                                         FileCase{"Latin1", "{a = \"caf\xE9\";}", "UTF-8"}),
                         nameOf);

TEST(SystemPropertyListsTest, RefusesFilesThatAreNotThereOrNoFiles) {
  std::string problem;
  EXPECT_FALSE(SystemPropertyLists().readDictionary("/nowhere/Config.plist", problem));
  EXPECT_THAT(problem, HasSubstr("/nowhere/Config.plist: No such file"));
  EXPECT_FALSE(SystemPropertyLists().readDictionary("/dev/zero", problem));
  EXPECT_THAT(problem, HasSubstr("/dev/zero: it is not a file"));
}

// macOS reads everything in this way.
TEST(FoundationPropertyListTest, ReadsEveryFormat) {
  for (const auto& bytes : {kXml, kBinary, kGnustep}) {
    const auto value = readWithFoundation(bytes);
    EXPECT_EQ(value ? describe(*value) : "nothing", kTypedValues);
  }
}

TEST(FoundationPropertyListTest, SurvivesWhatMakesTheFrameworkRaise) {
  EXPECT_FALSE(readWithFoundation(binaryFile({binaryArray({0})})));
  EXPECT_FALSE(readWithFoundation("bplist00\xD0" + bigEndian(8, 4) + binaryTrailer(1ULL << 40, 0, 9)));
  EXPECT_FALSE(readWithFoundation(""));
}

TEST(TextsTest, RealsAreTheSameInEveryLocale) {
  for (const auto* real : {"0", "-1", "+1.5", ".5", "5.", "1e3", "1.5E-300"})
    EXPECT_TRUE(isReal(real)) << real;
  for (const auto* none : {"", "-", ".", "e5", "1e", "1,5", "1 ", "0x1", "nan", "inf", "1e1000"})
    EXPECT_FALSE(isReal(none)) << none;
}

}  // namespace
}  // namespace corvane
