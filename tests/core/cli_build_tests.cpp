#include <algorithm>

#include "cli/answers.h"
#include "gif/descriptor.h"
#include "gif/gif_reader.h"
#include "platform/prompts.h"
#include "tests/support/cli_runner.h"
#include "tests/support/picture_files.h"
#include "tests/support/random_images.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_blocks.h"

namespace {

class CliBuild : public testing::Test {
protected:
    CliBuild() {
        prompts = {};
        prompts.onYesNo = [] { return answers.yesNo.value_or(-1); };
        for (const char* name : {"a.gif", "b.gif"}) {
            OwnedMemory image(RandomImage(random_, 6, 4, 8, Palette{}));
            WritePicture(folder_.Path(name), image.Get(), 8);
        }
        WriteAll(folder_.Path("broken.gif"), {'G', 'I', 'F'});
    }
    ~CliBuild() override { prompts = {}; }

    // Runs "zephyr build" with the options and files of the folder, and reads what it wrote.
    CliRun Build(const Words& options, const Words& files) {
        const std::string out = folder_.Path("out.gif");
        std::remove(out.c_str());
        Words words = {"build", "-o", out};
        words.insert(words.end(), options.begin(), options.end());
        for (const std::string& name : files) words.push_back(folder_.Path(name));
        CliRun run = RunCli(words);
        DestroyBlockList(&out_);
        EXPECT_TRUE(CreateBlockList(&out_));
        EXPECT_EQ(ReadGifFile(&out_, out.c_str()), run.status == kExitDone ? kReadDone : kReadFailed);
        return run;
    }

    Random random_{8};
    TempFolder folder_;
    OwnedBlockList out_;
};

TEST_F(CliBuild, OptionsReachTheDocument) {
    const struct {
        Words options;
        const char* kinds;
        int delay, depth;
        int lastRed = -1;  // of 256 colours, where it is told
    } cases[] = {
        {{}, "132326", 100, 3},
        {{"--loop"}, "1732326", 100, 3},
        {{"--delay", "0", "--owner=Jo", "--organisation=Mill"}, "132326", 0, 3},
        {{"--delay=65535", "--match", "sixteen"}, "132326", 65535, 4},
        {{"--match", "photo", "--web"}, "132326", 100, 8, 0},
        {{"--match", "drawn"}, "132326", 100, 8, 255},
        {{"--match", "first"}, "132326", 100, 8},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.options));
        CliRun run = Build(c.options, {"a.gif", "b.gif"});
        EXPECT_EQ(run.out + run.err, "") << "no terminal, no progress";
        EXPECT_EQ(KindsOf(out_), c.kinds);
        Block header = BlockAt(out_, 0);
        EXPECT_EQ(GetControlFields(BlockAt(out_, c.kinds[1] == '7' ? 2 : 1)).delay, c.delay);
        EXPECT_EQ(DepthOfPacked(GetHeaderFields(header).packed), c.depth);
        if (c.lastRed >= 0) {
            EXPECT_EQ(header.palette[255].red, c.lastRed);
        }
    }
}

TEST_F(CliBuild, BrokenInputEndsItUnlessSkipped) {
    const std::string unread = "broken.gif: no readable GIF picture";
    const std::tuple<Words, Words, const char*, std::string> cases[] = {
        {{}, {"a.gif", "broken.gif", "b.gif"}, "", unread + " (--skip-corrupted leaves such files out)"},
        {{}, {"a.gif", "missing.gif"}, "", "missing.gif: can't be opened: there is no such file (--skip-corrupted"},
        {{"--skip-corrupted"}, {"a.gif", "broken.gif", "b.gif"}, "1323326", "broken.gif: note: no readable"},
        {{"--skip-corrupted"}, {"broken.gif", "missing.gif"}, "", "out.gif: not written, as none of the files"},
        {{"--skip-corrupted", "--match", "first"}, {"broken.gif", "a.gif"}, "", unread + ", so there is no palette"},
        {{"--skip-corrupted", "--match", "photo"}, {"a.gif", "broken.gif", "b.gif"}, "1323326", "broken.gif: note: no"},
    };
    for (const auto& [options, files, kinds, complaint] : cases) {
        CliRun run = Build(options, files);
        EXPECT_EQ(KindsOf(out_), kinds);
        EXPECT_NE(run.err.find(complaint), std::string::npos) << run.err;
        EXPECT_FALSE(answers.yesNo.has_value()) << "an answer outlived its command";
    }
}

}  // namespace
