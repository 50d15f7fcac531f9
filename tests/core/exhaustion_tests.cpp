// Memory or the disk gives out at any moment of any command. What is not released then, the sanitizers find.
#include "platform/faults.h"
#include "tests/support/cli_runner.h"
#include "tests/support/gif_bytes.h"
#include "tests/support/picture_files.h"
#include "tests/support/random_images.h"

TEST(Exhaustion, EveryCommandFailsCleanlyOrDoesWithout) {
    TempFolder folder;
    const std::string in = folder.Path("in.gif"), out = folder.Path("out"), other = folder.Path("other.gif");
    GifBytes names = GifBytes().Word(1).Word(2).Word(2).Word(1).Repeat(0, 8).Text({"a\0", 2});
    GifBytes document = GifBytes().Header("GIF89a", 5, 4, 0x87).SmallImage(0x87).Comment("c");
    document.Extension(0x01, std::string(13, 'f'), "text").Extension(0xFF, "\x0DXMP DataXMP", "data");
    document.Extension(0xFF, "\x0BKELMORnb1.0", {reinterpret_cast<const char*>(names.data()), names.size()});
    for (int i = 0; i < 57; ++i) document.Add({0x21, 0xF9, 4, 0, 0, 0, 0, 0});  // so many that one more lets it grow
    WriteAll(in, document);
    Random random(6);
    OwnedMemory picture(RandomImage(random, 60, 50, 8, Palette{}));
    WritePicture(other, picture.Get(), 8);
    const Words commands[] = {
        {"list", "--json", in},
        {"save", in, out},
        {"extract", in, "1", out},
        {"remap", in, "1", out, "--palette", "6"},
        {"remap", other, "1", out, "--palette", "0", "--dither"},
        {"insert", in, out, "--kind=image", "--at=2", "--remap", other, in},
        {"insert", in, out, "--kind=image", "--at=2", "--dither", other},
        {"insert", in, out, "--kind=plaintext", "--at=1"},
        {"delete", in, out, "1", "2"},
        {"set", in, out, "2", "text=new"},
        {"build", "-o", out, "--loop", other, in},
        {"build", "-o", out, "--match=photo", other, in},
        {"build", "-o", out, "--match=first", other, in},
    };
    const Bytes before = {1, 2, 3};
    for (const Words& words : commands)
        for (long Faults::*counter : {&Faults::allocationsUntilFailure, &Faults::writesUntilFailure})
            for (long n = 0, left = 0; left == 0; ++n) {
                WriteAll(out, before);
                faults.*counter = n;
                int status = RunCli(words).status;
                left = faults.*counter;  // none: all were wanted, and perhaps more
                faults = {};
                SCOPED_TRACE(words[0] + " " + words[2] + ", request " + std::to_string(n));
                if (status == kExitDone) continue;
                EXPECT_EQ(status, kExitFailed);
                EXPECT_EQ(left, 0);
                const bool mayDelete = words[0] != "extract" && words[0] != "remap";  // a saved document may
                if (!mayDelete || FileExists(out)) {
                    EXPECT_TRUE(ReadAll(out) == before);
                }
            }
}
