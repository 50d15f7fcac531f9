// Memory or the disk gives out at any moment of any command, for good or just once. What is not released then, the
// sanitizers find.
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
    const std::pair<const char*, long Faults::*> kinds[] = {
        {"allocation", &Faults::allocationsUntilFailure},
        {"lock", &Faults::locksUntilFailure},
        {"read", &Faults::readsUntilFailure},
        {"write", &Faults::writesUntilFailure},
        {"seek", &Faults::seeksUntilFailure},
    };
    const Bytes before = {1, 2, 3};
    for (const Words& words : commands) {
        WriteAll(out, before);
        const CliRun unharmed = RunCli(words);
        ASSERT_EQ(unharmed.status, kExitDone);
        const Bytes result = ReadAll(out);
        for (bool onlyOne : {false, true})
            for (const auto& [what, counter] : kinds)
                for (long n = 0, left = 0; left <= 0; ++n) {
                    SCOPED_TRACE(words[0] + " " + words[2] + ", " + what + " " + std::to_string(n) +
                                 (onlyOne ? " alone" : " and later ones"));
                    WriteAll(out, before);
                    faults.onlyOne = onlyOne;
                    faults.*counter = n;
                    CliRun run = RunCli(words);
                    left = faults.*counter;  // some: no more than n were wanted
                    faults = {};
                    const bool isDone = run.status == kExitDone;
                    EXPECT_TRUE(isDone || left <= 0);
                    EXPECT_EQ(run.status, isDone ? kExitDone : kExitFailed);
                    EXPECT_EQ(run.err == unharmed.err, isDone) << run.err;
                    EXPECT_TRUE(ReadAll(out) == (isDone ? result : before)) << "the output is neither old nor new";
                    EXPECT_EQ(isDone ? run.out : unharmed.out, unharmed.out);
                }
    }
    EXPECT_EQ(folder.Names().size(), 3u) << "something was left behind";
}
