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

}  // namespace
