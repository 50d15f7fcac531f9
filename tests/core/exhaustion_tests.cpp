// Memory or the disk gives out at any moment of any command, for good or just once. What is not released then, the
// sanitizers find.
#include "platform/faults.h"
#include "tests/support/cli_runner.h"
#include "tests/support/gif_bytes.h"
#include "tests/support/picture_files.h"
#include "tests/support/random_images.h"

namespace {

class Exhaustion : public testing::Test {
protected:
    Exhaustion() {
        GifBytes names = GifBytes().Word(1).Word(2).Word(2).Word(1).Repeat(0, 8).Text({"a\0", 2});
        GifBytes document = GifBytes().Header("GIF89a", 5, 4, 0x87).SmallImage(0x87).Comment("c");
        document.Extension(0x01, std::string(13, 'f'), "text").Extension(0xFF, "\x0DXMP DataXMP", "data");
        document.Extension(0xFF, "\x0BKELMORnb1.0", {reinterpret_cast<const char*>(names.data()), names.size()});
        for (int i = 0; i < 57; ++i) document.Control(0);  // so many that one more lets it grow
        document.Add({0x3B});
        WriteAll(in_, document);
        GifBytes regular = GifBytes().Header("GIF89a", 60, 50, 0x87).SmallImage(0x87).Comment("c").SmallImage();
        regular.Extension(0xFF, "\x0BXMP DataXMP", "data")
            .Extension(0xFF, "\x0BKELMORnb1.0",
                       std::string_view(reinterpret_cast<const char*>(names.data()), names.size()))
            .Add({0x3B});
        WriteAll(regular_, regular);
        Random random(6);
        MemoryHandle picture = RandomImage(random, 60, 50, 8, Colours{});
        WritePicture(other_, picture, 8);
    }
    ~Exhaustion() override { faults = {}; }

    struct Outcome {
        CliRun run;
        Bytes out;
        long left;  // of the counter: some, when no more than that were wanted
    };

    Outcome Run(const Words& words, long Faults::*counter, long n, bool onlyOne) {
        WriteAll(out_, before_);
        faults.onlyOne = onlyOne;
        faults.*counter = n;
        CliRun run = RunCli(words);
        long left = faults.*counter;
        faults = {};
        return {run, ReadAll(out_), left};
    }

    // Either all is as without the fault, or the command says that it failed and leaves everything as it was.
    void ExpectAllOrNothing(const Outcome& faulted, const Outcome& unharmed) {
        const bool isDone = faulted.run.status == kExitDone;
        EXPECT_EQ(faulted.run.status, isDone ? kExitDone : kExitFailed);
        // In the whole manner a picture may be what there is no memory for: its bytes are written all the same.
        const bool lacksPicture = faulted.run.err.find("too large for the memory") != std::string::npos;
        EXPECT_EQ(faulted.run.err.empty(), isDone && !lacksPicture) << faulted.run.err;
        EXPECT_TRUE(faulted.out == (isDone ? unharmed.out : before_)) << "the output is neither old nor new";
        EXPECT_TRUE(!isDone || lacksPicture || faulted.run.out == unharmed.run.out);
        EXPECT_EQ(folder_.Names().size(), 4u) << "something was left behind";
    }

    TempFolder folder_;
    const std::string in_ = folder_.Path("in.gif"), out_ = folder_.Path("out"), other_ = folder_.Path("other.gif"),
                      regular_ = folder_.Path("regular.gif");
    const Bytes before_ = {1, 2, 3};
};

}  // namespace

TEST_F(Exhaustion, EveryCommandFailsCleanlyOrDoesWithout) {
    const Words commands[] = {
        {"list", "--classic", "--json", in_},
        {"save", "--classic", in_, out_},
        {"extract", "--classic", in_, "1", out_},
        {"remap", "--classic", in_, "1", out_, "--palette", "6"},
        {"remap", other_, "1", out_, "--palette", "0", "--dither"},
        {"insert", "--classic", in_, out_, "--kind=image", "--at=2", "--remap", other_, in_},
        {"insert", "--classic", in_, out_, "--kind=plaintext", "--at=1"},
        {"delete", "--classic", in_, out_, "1", "2"},
        {"set", "--classic", in_, out_, "2", "text=new"},
        {"build", "--classic", "-o", out_, "--loop", other_, in_},
        {"build", "-o", out_, "--match=photo", other_, in_},
        {"build", "-o", out_, "--match=first", other_, in_},
        {"list", "--json", regular_},
        {"list", "--text", regular_},
        {"insert", regular_, out_, "--kind=image", "--at=2", "--dither", other_},
        {"delete", regular_, out_, "1", "2"},
        {"set", regular_, out_, "4", "data=@" + in_},
        {"extract", regular_, "4", out_},
        {"repair", regular_, out_},
    };
    const std::pair<const char*, long Faults::*> kinds[] = {
        {"allocation", &Faults::allocationsUntilFailure},
        {"read", &Faults::readsUntilFailure},
        {"write", &Faults::writesUntilFailure},
        {"seek", &Faults::seeksUntilFailure},
    };
    for (const Words& words : commands) {
        const Outcome unharmed = Run(words, &Faults::readsUntilFailure, Faults::kNever, false);
        ASSERT_EQ(unharmed.run.status, kExitDone);
        for (bool onlyOne : {false, true})
            for (const auto& [what, counter] : kinds)
                for (long n = 0, left = 0; left <= 0; ++n) {
                    SCOPED_TRACE(words[0] + " " + words[2] + ", " + what + " " + std::to_string(n) +
                                 (onlyOne ? " alone" : " and later ones"));
                    Outcome faulted = Run(words, counter, n, onlyOne);
                    left = faulted.left;
                    EXPECT_TRUE(left <= 0 || faulted.run.status == kExitDone);
                    ExpectAllOrNothing(faulted, unharmed);
                }
    }
}

// A picture that there is no memory for is told of; what the files have in common is the same all the same.
TEST_F(Exhaustion, DiffNeverTakesShortMemoryForADifference) {
    const Words pairs[] = {{"diff", regular_, regular_}, {"diff", regular_, other_}};
    for (const Words& words : pairs) {
        const Outcome unharmed = Run(words, &Faults::allocationsUntilFailure, Faults::kNever, true);
        for (long n = 0, left = 0; left <= 0; ++n) {
            SCOPED_TRACE(words[2] + ", allocation " + std::to_string(n));
            const Outcome faulted = Run(words, &Faults::allocationsUntilFailure, n, true);
            left = faulted.left;
            const bool lacksPicture = faulted.run.err.find("too large for the memory") != std::string::npos;
            if (faulted.run.status == kExitTrouble) {
                EXPECT_NE(faulted.run.err, "");
                continue;
            }
            EXPECT_EQ(faulted.run.status, unharmed.run.status);
            EXPECT_TRUE(lacksPicture || faulted.run.out == unharmed.run.out) << faulted.run.out;
        }
    }
}

TEST_F(Exhaustion, NoLockThatFailsGoesUnnoticed) {
    constexpr long kEnough = 1000000;
    const Words commands[] = {{"save", "--classic", in_, out_},
                              {"extract", "--classic", in_, "1", out_},
                              {"remap", "--classic", in_, "1", out_, "--palette", "6"},
                              {"delete", "--classic", in_, out_, "1", "2"},
                              {"set", "--classic", in_, out_, "2", "text=new"},
                              {"save", regular_, out_},
                              {"set", regular_, out_, "2", "text=new"},
                              {"set", regular_, out_, "4", "data=@" + in_}};
    for (const Words& words : commands) {
        const Outcome unharmed = Run(words, &Faults::locksUntilFailure, kEnough, true);
        ASSERT_EQ(unharmed.run.status, kExitDone);
        const long locks = kEnough - unharmed.left;
        for (long n = 0; n < locks; ++n) {
            SCOPED_TRACE(words[0] + ", lock " + std::to_string(n));
            ExpectAllOrNothing(Run(words, &Faults::locksUntilFailure, n, true), unharmed);
        }
    }
}
