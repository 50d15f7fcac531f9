#include <algorithm>

#include "tests/support/cli_runner.h"
#include "tests/support/picture_files.h"
#include "tests/support/random_images.h"
#include "tests/support/test_blocks.h"

namespace {

class CliBuild : public testing::Test {
protected:
    CliBuild() {
        for (const char* name : {"a.gif", "b.gif"}) {
            MemoryHandle image = RandomImage(random_, 6, 4, 8, Colours{});
            WritePicture(folder_.Path(name), image, 8);
        }
        WriteAll(folder_.Path("broken.gif"), {'G', 'I', 'F'});
    }

    // Runs "zephyr build" with the options and files of the folder.
    CliRun Build(const Words& options, const Words& files) {
        const std::string out = folder_.Path("out.gif");
        std::remove(out.c_str());
        Words words = {"build", "-o", out};
        words.insert(words.end(), options.begin(), options.end());
        for (const std::string& name : files) words.push_back(folder_.Path(name));
        CliRun run = RunClassic(words);
        EXPECT_EQ(FileExists(out), run.status == kExitDone);
        return run;
    }
    Bytes Out() const { return ReadAll(folder_.Path("out.gif")); }

    Random random_{8};
    TempFolder folder_;
};

TEST_F(CliBuild, OptionsReachTheDocument) {
    const std::tuple<Words, const char*, int, int, int> cases[] = {
        // The options, kinds of blocks, delay, depth and, of 256 known colours, the red of the last.
        {{"--loop"}, "1732326", 100, 3, -1},
        {{"--delay", "0"}, "132326", 0, 3, -1},
        {{"--delay=65535", "--match", "sixteen"}, "132326", 65535, 4, -1},
        {{"--match", "photo", "--web"}, "132326", 100, 8, 0},
        {{"--match", "drawn"}, "132326", 100, 8, 255},
        {{"--match", "first"}, "132326", 100, 8, -1},
    };
    for (const auto& [options, kinds, delay, depth, lastRed] : cases) {
        SCOPED_TRACE(testing::PrintToString(options));
        CliRun run = Build(options, {"a.gif", "b.gif"});
        EXPECT_EQ(run.out + run.err, "") << "no terminal, no progress";
        LoadedGif out(Out());
        EXPECT_EQ(KindsOf(out), kinds);
        Block header = BlockAt(out, 0);
        EXPECT_EQ(GetControlFields(BlockAt(out, out.count - 5)).delay, delay);
        EXPECT_EQ(DepthOfPacked(GetHeaderFields(header).packed), depth);
        if (lastRed >= 0) {
            EXPECT_EQ(header.palette[255].red, lastRed);
        }
    }
}

TEST_F(CliBuild, BrokenInputEndsItUnlessSkipped) {
    const std::string unread = "broken.gif: no readable picture: no GIF, PNG, JPEG or BMP file";
    const std::tuple<Words, Words, const char*, std::string> cases[] = {
        {{}, {"a.gif", "broken.gif", "b.gif"}, "", unread + " (--skip-corrupted leaves such files out)"},
        {{}, {"a.gif", "missing.gif"}, "", "missing.gif: can't be opened: there is no such file\n"},
        {{"--skip-corrupted"}, {"a.gif", "missing.gif"}, "", "missing.gif: can't be opened: there is no such file\n"},
        {{"--skip-corrupted"}, {"a.gif", "", "b.gif"}, "", "can't be opened: it is a folder\n"},
        {{"--skip-corrupted"}, {"a.gif", "broken.gif", "b.gif"}, "1323326", "broken.gif: note: no readable"},
        {{"--skip-corrupted"}, {"broken.gif", "broken.gif"}, "", "out.gif: not written, as none of the files"},
        {{"--skip-corrupted", "--match", "first"}, {"broken.gif", "a.gif"}, "", unread + ", so there is no palette"},
        {{"--skip-corrupted", "--match", "photo"}, {"a.gif", "broken.gif", "b.gif"}, "1323326", "broken.gif: note: no"},
    };
    for (const auto& [options, files, kinds, complaint] : cases) {
        CliRun run = Build(options, files);
        EXPECT_EQ(KindsOf(LoadedGif(Out())), kinds);
        EXPECT_NE(run.err.find(complaint), std::string::npos) << run.err;
    }
}

TEST_F(CliBuild, SeriesAndTheirTiming) {
    for (const char* name : {"s-1.png", "s-2.png", "s-3.png", "s-5.png", "t007.png", "t008.png"})
        WriteColouredPng(folder_.Path(name), 2, {0xFF000001u, 0xFF0000FFu, 0xFF00FF00u, 0xFF123456u});
    using Delays = std::vector<int>;
    const std::tuple<Words, Words, Delays, std::string> cases[] = {
        {{}, {"s-%d.png"}, {100, 100, 100}, "s-4.png: note: not there, so the series ends before it, although"},
        {{"--start=2", "--delay", "4"}, {"s-%d.png"}, {4, 4}, "s-4.png: note"},
        {{"--start", "7", "--fps=40"}, {"t%03d.png"}, {3, 2}, ""},
        {{"--fps", "12.5", "--start=7"}, {"t%03d.png", "a.gif"}, {8, 8, 8}, ""},
        {{"--delays", "10,20"}, {"a.gif", "s-%d.png"}, {10, 20, 10, 20}, "s-4.png: note"},
        {{"--fps=100"}, {"a.gif", "b.gif"}, {1, 1}, "out.gif: note: browsers show frames of less than 2 hundredths"},
    };
    for (const auto& [options, files, delays, note] : cases) {
        SCOPED_TRACE(testing::PrintToString(options));
        const CliRun run = Build(options, files);
        EXPECT_EQ(run.status, kExitDone) << run.err;
        EXPECT_NE(run.err.find(note), std::string::npos) << run.err;
        EXPECT_EQ(run.err.empty(), note.empty()) << run.err;
        Delays found;
        const LoadedGif out(Out());
        for (const Block& block : out.All())
            if (block.kind == kControlBlock) found.push_back(GetControlFields(block).delay);
        EXPECT_EQ(found, delays);
    }
    WriteAll(folder_.Path("%d.gif"), ReadAll(folder_.Path("a.gif")));
    EXPECT_EQ(Build({}, {"%d.gif", "a.gif"}).status, kExitDone) << "the name of a file, and no series";
}

TEST_F(CliBuild, WordsThatMakeNoSense) {
    const std::tuple<Words, Words, const char*> cases[] = {
        {{}, {"a.gif"}, "give at least two files"},
        {{"--all-frames"}, {}, "give at least one file"},
        {{}, {"x-%d.png"}, "x-1.png (--start N begins elsewhere)"},
        {{"--start=3"}, {"x-%d.png"}, "there is no "},
        {{"--start=3"}, {"a.gif", "b.gif"}, "--start is for a series"},
        {{"--start=x"}, {"a.gif", "b.gif"}, "--start takes the number"},
        {{"--fps=0"}, {"a.gif", "b.gif"}, "--fps takes a number from 0.01 to 100"},
        {{"--fps=nan"}, {"a.gif", "b.gif"}, "--fps takes a number"},
        {{"--fps=101"}, {"a.gif", "b.gif"}, "--fps takes a number"},
        {{"--fps=10 "}, {"a.gif", "b.gif"}, "--fps takes a number"},
        {{"--fps=10", "--delay=3"}, {"a.gif", "b.gif"}, "give one of --delay, --delays and --fps"},
        {{"--delays="}, {"a.gif", "b.gif"}, "--delays takes numbers"},
        {{"--delays=1,"}, {"a.gif", "b.gif"}, "--delays takes numbers"},
        {{"--delays=1,65536"}, {"a.gif", "b.gif"}, "--delays takes numbers"},
        {{"--delays=1,2,3"}, {"a.gif", "b.gif"}, "--delays has more delays than there are frames"},
    };
    for (const auto& [options, files, complaint] : cases) {
        const CliRun run = Build(options, files);
        EXPECT_EQ(run.status, kExitUsage) << testing::PrintToString(options);
        EXPECT_NE(run.err.find(complaint), std::string::npos) << run.err;
    }
    const CliRun run = Build({"--all-frames", "--delays=1,2,3"}, {"a.gif", "b.gif"});
    EXPECT_EQ(run.status, kExitFailed) << "known only when all frames were counted";
    EXPECT_NE(run.err.find("more delays than there are frames"), std::string::npos) << run.err;
}

}  // namespace
