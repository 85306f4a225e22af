#include "tests/tools/DittoKit.h"

namespace corvane {
namespace {

using DittoCopyTest = DittoKit;

TEST_F(DittoCopyTest, MergesAFolderIntoAnother) {
  EXPECT_EQ(shell(R"~(mkdir -p source/sub there/sub; cd source; echo new >sub/file; echo '#!' >program
ln -s sub/file link; chmod 604 sub/file; chmod 755 program; chmod 550 sub
touch -d '2001-02-03 04:05:07.123456789' sub/file sub; cd ../there
echo old and longer >sub/file; echo stays >sub/other; echo not through the link >target; ln -s target program
cd ..; ditto source deep/new; same source deep/new %.9Y
ditto source there; cat there/sub/other there/target; rm there/sub/other there/target; same source there)~"),
            "stays\nnot through the link\n");
}

TEST_F(DittoCopyTest, AFileGoesToAPathOrIntoAFolder) {
  EXPECT_EQ(
      shell(R"~(echo new >file; chmod 444 file; ln -s file alias; look() { stat -c '%f %.9Y' $1; cat $1; }
while read from to made; do
rm -rf folder; mkdir folder; echo old >folder/old
ditto -X $from $to; [ "$(look $made)" = "$(look file)" ] || echo $from $to; done <<END
file folder/new folder/new
file folder/old folder/old
file folder folder/file
file folder/ folder/file
alias folder/new folder/new
alias folder folder/alias
END
)~"),
      "");
}

TEST_F(DittoCopyTest, ExtendedAttributesAreKeptUnlessToldOtherwise) {
  const std::string kept = shell(R"~(mkdir source; >source/file; chmod 444 source/file
python3 -c "import os; os.setxattr('source/file', 'user.origin', b'here')" 2>&- || exit 77
for option in --rsrc --norsrc --noextattr; do ditto $option source copy$option
python3 -c "import os; print('user.origin' in os.listxattr('copy$option/file'))"; done)~");
  if (kept == kSkipped) GTEST_SKIP() << "the file system has no extended attributes";
  EXPECT_EQ(kept, "True\nFalse\nFalse\n");
}

TEST_F(DittoCopyTest, DoesNotCopyADestinationIntoItself) {
  EXPECT_EQ(
      shell("mkdir -p source/a; >source/a/file; timeout 20 ditto source source/b; cd source; find b | sort"),
      "b\nb/a\nb/a/file\n");
}

TEST_F(DittoCopyTest, NamesWhatItCannotCopyAndCopiesTheRest) {
  EXPECT_EQ(
      shell(R"~(mkdir -p source/sub source/taken outside there/z2; >source/sub/file; >source/z; >source/z2
ln -s ../outside there/sub; >there/taken; mkfifo source/pipe
ditto source there 2>log && echo succeeded; cut -d: -f 1,2 log | sort; ls -A there outside)~"),
      "ditto: source/pipe\nditto: there/sub\nditto: there/taken\nditto: there/z2\n"
      "outside:\n\nthere:\nsub\ntaken\nz\nz2\n");
}

}  // namespace
}  // namespace corvane
