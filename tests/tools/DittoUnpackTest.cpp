#include <archive.h>
#include <archive_entry.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include "tests/tools/DittoKit.h"

namespace corvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

struct Entry {
  std::string name;
  unsigned kind = AE_IFREG;
  std::string content = "planted";  // or a link's target
};

class DittoUnpackTest : public testing::Test, protected DittoKit {
 protected:
  void SetUp() override {
    makeFolder("outside");
    makeFolder("out");
  }

  void makeArchive(const std::vector<Entry>& entries) const {
    archive* writer = archive_write_new();
    archive_write_set_format_zip(writer);
    archive_write_open_filename(writer, path("a.zip").c_str());
    for (const Entry& entry : entries) {
      archive_entry* header = archive_entry_new();
      archive_entry_copy_pathname(header, entry.name.c_str());
      archive_entry_set_mode(header, entry.kind | 06755);
      if (entry.kind == AE_IFLNK) archive_entry_copy_symlink(header, entry.content.c_str());
      archive_entry_set_size(header,
                             entry.kind == AE_IFREG ? static_cast<la_int64_t>(entry.content.size()) : 0);
      ASSERT_EQ(archive_write_header(writer, header), ARCHIVE_OK);
      if (entry.kind == AE_IFREG) archive_write_data(writer, entry.content.data(), entry.content.size());
      archive_entry_free(header);
    }
    archive_write_free(writer);
  }
};

TEST_F(DittoUnpackTest, WritesNothingOutside) {
  makeLink("out/planted", "../outside");
  makeLink("out/through", "../outside/file");
  makeArchive({{"../outside/a"},
               {path("outside/b")},
               {"sub/../../outside/c"},
               {".."},
               {"link", AE_IFLNK, "../outside"},
               {"link/d"},
               {"link", AE_IFDIR},
               {"planted/e"},
               {"planted/f", AE_IFLNK, "x"},
               {"through"},
               {"./good"}});
  const ToolResult result = ditto({"-x", "-k", path("a.zip"), path("out")});
  EXPECT_EQ(result.status, 1);
  for (const std::string& name :
       {std::string("../outside/a"), path("outside/b"), std::string("sub/../../outside/c"), std::string(".."),
        std::string("link/d"), std::string("planted/e")}) {
    EXPECT_THAT(result.output, HasSubstr("ditto: " + name + ": "));
  }
  EXPECT_THAT(result.output, Not(HasSubstr("good")));
  EXPECT_THAT(namesIn(path("outside")), ElementsAre());
  EXPECT_THAT(namesIn(path("")), ElementsAre("a.zip", "out", "outside"));
  EXPECT_THAT(namesIn(path("out")), ElementsAre("good", "link", "planted", "through"));
  // Nor does what was unpacked act in its owner's name.
  EXPECT_EQ(contents(path("out"), Times::none)["through"], "file 493: planted");
}

TEST_F(DittoUnpackTest, FoldersWithoutAnEntryAreAsTheUserMakesThem) {
  makeArchive({{"implied/folder/file"}, {"named", AE_IFDIR}, {"named/file"}});
  ASSERT_EQ(shell("umask 027; $DITTO -xk a.zip out").status, 0);
  EXPECT_EQ(contents(path("out"), Times::none)["implied/folder"], "folder " + std::to_string(0750));
  EXPECT_EQ(contents(path("out"), Times::none)["named"], "folder " + std::to_string(0755));
}

struct DamageCase {
  const char* what;
  const char* damage;  // of a.zip
  const char* named;
};

class DamageTest : public DittoUnpackTest, public testing::WithParamInterface<DamageCase> {};

TEST_P(DamageTest, IsReportedAndReplacesNothing) {
  // Without compression the bytes of the file stand as they are, after a header of some 65.
  const ToolResult made = shell(
      "printf 'a sentence that is to stay whole' > file; echo older > out/file\n"
      "bsdtar --format zip --options zip:compression=store -cf a.zip file");
  ASSERT_EQ(made.status, 0) << made.output;
  ASSERT_EQ(shell(GetParam().damage).status, 0);
  const ToolResult result = ditto({"-xk", path("a.zip"), path("out")});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.output, HasSubstr(GetParam().named));
  EXPECT_THAT(namesIn(path("out")), ElementsAre("file"));
  EXPECT_EQ(read("out/file"), "older\n");
}

INSTANTIATE_TEST_SUITE_P(Kinds, DamageTest,
                         testing::Values(DamageCase{"content", "sed -i 's/sentence/sentense/' a.zip",
                                                    "ditto: file: "},
                                         DamageCase{"cutShort", "truncate -s 80 a.zip", "ditto: file: "},
                                         DamageCase{"empty", "truncate -s 0 a.zip", "a.zip: "},
                                         DamageCase{"noArchive", "cp /bin/sh a.zip", "a.zip: "},
                                         DamageCase{"missing", "rm a.zip", "a.zip: "},
                                         DamageCase{"folder", "rm a.zip; mkdir a.zip", "a.zip: "}),
                         [](const auto& tested) { return tested.param.what; });

}  // namespace
}  // namespace corvane
