#include <gtest/gtest.h>

#include "cli/answers.h"
#include "cli/commands.h"
#include "gif/descriptor.h"
#include "gif/gif_reader.h"
#include "platform/prompts.h"
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

    // Runs "zephyr build" with "-o out.gif" and the words; those that end in ".gif" are files of the folder.
    int Build(const Words& words) {
        Words all = {"build", "-o", folder_.Path("out.gif")};
        for (const std::string& word : words)
            all.push_back(word.size() > 4 && word.substr(word.size() - 4) == ".gif" ? folder_.Path(word) : word);
        testing::internal::CaptureStderr();
        int status = RunZephyr(all);
        errors_ = testing::internal::GetCapturedStderr();
        return status;
    }

    std::string OutKinds() const {
        OwnedList document;
        (void)CreateBlockList(&document);
        return ReadGifFile(&document, folder_.Path("out.gif").c_str()) == kReadDone ? KindsOf(document) : "(none)";
    }
    Block Out(uint32_t index) {
        DestroyBlockList(&out_);
        (void)CreateBlockList(&out_);
        ReadGifFile(&out_, folder_.Path("out.gif").c_str());
        return BlockAt(out_, index);
    }

    Random random_{8};
    TempFolder folder_;
    OwnedList out_;
    std::string errors_;
};

}  // namespace

TEST_F(CliBuild, OptionsReachTheDocument) {
    struct {
        Words options;
        const char* kinds;
        int delay, depth;
    } cases[] = {
        {{}, "132326", 100, 3},
        {{"--loop"}, "1732326", 100, 3},
        {{"--delay", "0"}, "132326", 0, 3},
        {{"--delay=65535", "--match", "sixteen"}, "132326", 65535, 4},
        {{"--match", "photo", "--web"}, "132326", 100, 8},
        {{"--match", "drawn"}, "132326", 100, 8},
        {{"--match", "first"}, "132326", 100, 8},
        {{"--match", "super"}, "132326", 100, 3},
    };
    for (const auto& c : cases) {
        Words words = c.options;
        words.insert(words.end(), {"a.gif", "b.gif"});
        SCOPED_TRACE(c.options.empty() ? "" : c.options[0]);
        EXPECT_EQ(Build(words), kExitDone);
        EXPECT_EQ(errors_, "") << "no terminal, no progress";
        EXPECT_EQ(OutKinds(), c.kinds);
        bool loops = c.kinds[1] == '7';
        EXPECT_EQ(GetControlFields(Out(loops ? 2 : 1)).delay, c.delay);
        EXPECT_EQ(DepthOfPacked(GetHeaderFields(Out(0)).packed), c.depth);
        EXPECT_EQ(GetHeaderFields(Out(0)).screenWidth, 6);
    }
}

TEST_F(CliBuild, WebChoosesTheWebColours) {
    EXPECT_EQ(Build({"--match", "drawn", "a.gif", "b.gif"}), kExitDone);
    EXPECT_EQ(Out(0).palette[255], (RgbTriple{255, 255, 255}));
    EXPECT_EQ(Build({"--match", "drawn", "--web", "a.gif", "b.gif"}), kExitDone);
    EXPECT_EQ(Out(0).palette[215], (RgbTriple{255, 255, 255}));
    EXPECT_EQ(Out(0).palette[255], RgbTriple{});
}

TEST_F(CliBuild, NamesGoIntoTheFileIdentity) {
    EXPECT_EQ(Build({"--owner", "Jo", "--organisation=Mill", "a.gif", "b.gif"}), kExitDone);
    std::string comment = TextOf(Out(5));
    EXPECT_NE(comment.find("Jo"), std::string::npos) << comment;
    EXPECT_NE(comment.find("Mill"), std::string::npos) << comment;
}

TEST_F(CliBuild, BrokenInputEndsItUnlessSkipped) {
    struct {
        Words words;
        int status;
        const char* kinds;
        const char* complaint;
    } cases[] = {
        {{"a.gif", "broken.gif", "b.gif"}, kExitFailed, "(none)", "broken.gif: no readable GIF picture"},
        {{"a.gif", "missing.gif"}, kExitFailed, "(none)", "missing.gif: no readable GIF picture"},
        {{"--skip-corrupted", "a.gif", "broken.gif", "b.gif"}, kExitDone, "1323326", "broken.gif: note"},
        {{"--skip-corrupted", "broken.gif", "missing.gif"}, kExitFailed, "(none)", "out.gif: not written"},
        {{"--skip-corrupted", "--match", "first", "broken.gif", "a.gif"}, kExitFailed, "(none)", "no palette"},
    };
    for (const auto& c : cases) {
        std::remove(folder_.Path("out.gif").c_str());
        EXPECT_EQ(Build(c.words), c.status);
        EXPECT_EQ(OutKinds(), c.kinds);
        EXPECT_NE(errors_.find(c.complaint), std::string::npos) << errors_;
        EXPECT_FALSE(answers.yesNo.has_value()) << "an answer outlived its command";
    }
}

TEST_F(CliBuild, WrongWords) {
    struct {
        Words words;
        const char* complaint;
    } cases[] = {
        {{"build", "a", "b"}, "-o OUT"},
        {{"build", "-o", "x"}, "at least two files"},
        {{"build", "-o", "x", "a"}, "at least two files"},
        {{"build", "-o", "x", "--match", "best", "a", "b"}, "--match takes"},
        {{"build", "-o", "x", "--delay", "65536", "a", "b"}, "--delay takes"},
        {{"build", "-o", "x", "--delay", "-1", "a", "b"}, "--delay takes"},
        {{"build", "-o", "x", "--delay=1.5", "a", "b"}, "--delay takes"},
        {{"build", "-o", "x", "--reverse", "a", "b"}, "unknown option"},
    };
    for (const auto& c : cases) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(RunZephyr(c.words), kExitUsage);
        std::string errors = testing::internal::GetCapturedStderr();
        EXPECT_NE(errors.find(c.complaint), std::string::npos) << errors;
    }
}
