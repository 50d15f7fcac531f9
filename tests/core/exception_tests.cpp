// The memory of a string or container ends at any moment of a command. What is not released then, or twice, the
// sanitizers find.
#include "tests/support/cli_runner.h"
#include "tests/support/failing_new.h"
#include "tests/support/picture_files.h"
#include "tests/support/random_images.h"
#include "tests/support/test_blocks.h"

namespace {

// Runs the command with request number `n` for such memory failing. False when it did not want so many.
bool RunWithout(long n, const Words& words, int* status) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    failingNew.untilFailure = n;
    *status = RunZephyr(words);
    const bool reached = n >= 0 && failingNew.untilFailure < 0;
    failingNew = {};
    testing::internal::GetCapturedStdout();
    testing::internal::GetCapturedStderr();
    return reached;
}

}  // namespace

TEST(Exceptions, EveryCommandReleasesWhatItTook) {
    TempFolder folder;
    const std::string longName = "a name that no string keeps within itself.gif";
    const std::string in = folder.Path("in.gif"), out = folder.Path("out"), other = folder.Path(longName);
    WriteAll(in, GifBytes().Header("GIF89a", 5, 4, 0x87).SmallImage().Comment("a comment that is soon another"));
    Random random(6);
    MemoryHandle picture = RandomImage(random, 6, 5, 8, Colours{});
    WritePicture(other, picture, 8);
    const Words commands[] = {
        {"list", "--json", in},
        {"list", "--text", in},
        {"diff", "--json", in, other},
        {"save", in, out},
        {"extract", in, "1", out},
        {"remap", in, "1", out, "--palette", "6"},
        {"insert", in, out, "--kind=image", "--at=1", "--keep", other, in},
        {"insert", in, out, "--kind=comment", "--at=1"},
        {"delete", in, out, "1", "2"},
        {"set", in, out, "2", "text=a text that no string keeps within itself", "text=again such a text, and one more"},
        {"set", in, out, "2", "text=a text that no string keeps within itself", "no field of a comment block=1"},
        {"build", "-o", out, other, in},
    };
    for (const Words& words : commands) {
        int expected = kExitDone;
        std::remove(out.c_str());
        ASSERT_FALSE(RunWithout(FailingNew::kNever, words, &expected));
        const Bytes written = ReadAll(out);
        long n = 0;
        for (int status = kExitDone; RunWithout(n, words, &status); ++n) {
            SCOPED_TRACE(words[0] + ", request " + std::to_string(n));
            if (status == (words[0] == "diff" ? kExitTrouble : kExitFailed)) continue;
            EXPECT_EQ(status, expected);
            EXPECT_EQ(ReadAll(out), written) << "did without and wrote something else";
        }
        EXPECT_GT(n, 5) << "nothing failed";
    }
}
