#include "tests/tools/DittoKit.h"

namespace corvane {
namespace {

using DittoUnpackTest = DittoKit;

// `planted NAME KIND CONTENT ...` makes a.zip; a kind is the first digits of a mode.
const std::string kPlanted = R"~(mkdir out outside; planted() { python3 -W ignore -c "
import sys, zipfile
with zipfile.ZipFile('a.zip', 'w') as archive:
    for i in range(1, len(sys.argv), 3):
        entry = zipfile.ZipInfo(sys.argv[i])
        entry.create_system, entry.external_attr = 3, int(sys.argv[i + 1] + '6755', 8) << 16
        archive.writestr(entry, sys.argv[i + 2])" "$@"; }
)~";

TEST_F(DittoUnpackTest, WritesNothingOutside) {
  EXPECT_EQ(shell(kPlanted + R"~(ln -s ../outside out/planted; ln -s ../outside/file out/through
planted ../outside/a 10 x "$PWD/outside/b" 10 x sub/../../outside/c 10 x .. 10 x link 12 ../outside \
  link/d 10 x link/ 4 '' planted/e 10 x planted/f 12 x through 10 x ./good 10 x
ditto -x -k a.zip out 2>log && echo succeeded; sed "s|$PWD||" log | cut -d: -f 2; ls -A . out outside
stat -c '%A %s' out/through)~"),
            " ../outside/a\n /outside/b\n sub/../../outside/c\n ..\n link/d\n link/\n planted/e\n planted/f\n"
            ".:\na.zip\nlog\nout\noutside\n\nout:\ngood\nlink\nplanted\nthrough\n\noutside:\n"
            // Nor does what was unpacked act in its owner's name.
            "-rwxr-xr-x 1\n");
}

TEST_F(DittoUnpackTest, FoldersWithoutAnEntryAreAsTheUserMakesThem) {
  EXPECT_EQ(shell(kPlanted + "planted implied/folder/file 10 x named/ 4 '' named/file 10 x\n"
                             "umask 027; ditto -xk a.zip out; stat -c %a out/implied/folder out/named"),
            "750\n755\n");
}

// Without compression the bytes of the file stand as they are, after a header of some 65.
TEST_F(DittoUnpackTest, DamageIsReportedAndReplacesNothing) {
  EXPECT_EQ(shell(R"~(mkdir out; printf 'a sentence that is to stay whole' >file; echo older >out/file
while read damage; do
rm -rf a.zip; bsdtar --format zip --options zip:compression=store -cf a.zip file
eval "$damage"; ditto -xk a.zip out 2>log
echo $? $(head -n 1 log | cut -d: -f 1,2; ls -A out; cat out/file); done <<END
sed -i s/sentence/sentense/ a.zip
truncate -s 80 a.zip
truncate -s 0 a.zip
cp /bin/sh a.zip
rm a.zip
rm a.zip; mkdir a.zip
END
)~"),
            "1 ditto: file file older\n1 ditto: file file older\n1 ditto: a.zip file older\n"
            "1 ditto: a.zip file older\n1 ditto: a.zip file older\n1 ditto: a.zip file older\n");
}

}  // namespace
}  // namespace corvane
