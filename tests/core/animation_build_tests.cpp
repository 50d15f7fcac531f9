#include "editing/animation_build.h"

#include <gtest/gtest.h>

#include <cstring>

#include "editing/palette_match.h"
#include "gif/default_blocks.h"
#include "gif/descriptor.h"
#include "gif/first_image.h"
#include "imaging/palette_order.h"
#include "imaging/standard_palette.h"
#include "platform/prompts.h"
#include "resources/string_ids.h"
#include "tests/support/fault_loop.h"
#include "tests/support/literal_colours.h"
#include "tests/support/picture_files.h"
#include "tests/support/random_images.h"
#include "tests/support/scripted_input.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_blocks.h"

namespace {

constexpr PaletteMatching kAllMatchings[] = {PaletteMatching::kSuperPalette, PaletteMatching::kFirstPalette,
                                             PaletteMatching::kPhotorealistic, PaletteMatching::kDrawn,
                                             PaletteMatching::kSixteenColours};

class BuildAnimationTest : public testing::Test {
protected:
    BuildAnimationTest() {
        prompts = {};
        input = {};
        paletteChoiceForInsert = kAskForPalette;
    }
    ~BuildAnimationTest() override {
        prompts = {};
        input = {};
        faults = {};
    }

    // A file of random pixels, `depth` bits a pixel.
    void AddFile(int width, int height, int depth) {
        const int bitCount = depth == 1 ? 1 : depth <= 4 ? 4 : 8;
        OwnedMemory image(RandomImage(random_, width, height, bitCount, Palette{}));
        AddPicture(image.Get(), depth);
    }
    void AddPicture(MemoryHandle image, int depth) {
        files_.push_back(folder_.Path("frame" + std::to_string(files_.size()) + ".gif"));
        WritePicture(files_.back(), image, depth);
    }
    void AddBrokenFile() {
        files_.push_back(folder_.Path("broken" + std::to_string(files_.size()) + ".gif"));
        WriteAll(files_.back(), {'G', 'I', 'F', '8'});
    }
    // Files of every depth and of different sizes.
    void AddUsualFiles() {
        AddFile(9, 5, 5);
        AddFile(4, 12, 1);
        AddFile(7, 3, 4);
        AddFile(30, 2, 8);
        AddFile(3, 3, 2);
    }

    BuildOutcome Build(BlockList* document) {
        result_ = BuildAnimation(nullptr, settings_, files_, document);
        return result_.outcome;
    }

    Random random_{4};
    TempFolder folder_;
    std::vector<std::string> files_;
    AnimationSettings settings_;
    BuildResult result_;
};

struct Expected {
    Palette palette = {};
    int depth = 0;
    std::vector<MemoryHandle> images;

    Expected() = default;
    ~Expected() {
        for (MemoryHandle image : images) FreeMemory(image);
    }
    Expected(const Expected&) = delete;
    Expected& operator=(const Expected&) = delete;
};

void ExpectSharedPalette(const std::vector<MemoryHandle>& sources, Expected* expected) {
    std::vector<MemoryHandle> expanded;
    for (MemoryHandle source : sources) expanded.push_back(LiteralExpand(source));
    int count = LiteralSharedPalette(256, expected->palette.data(), expanded);
    SortPaletteByBrightness(expected->palette.data(), count, true);
    expected->depth = DepthForColourCount(count);
    std::vector<uint8_t> table = LiteralInverseTable(expected->palette.data());
    for (MemoryHandle image : expanded) {
        expected->images.push_back(LiteralRemap(image, expected->palette.data(), expected->depth, table));
        FreeMemory(image);
    }
}

// What the settings ask for, made by the plain forms of the conversions.
void Expect(const AnimationSettings& settings, const std::vector<std::string>& files, Expected* expected) {
    std::vector<MemoryHandle> sources;
    std::vector<int> bitCounts;
    int firstDepth = 0;
    for (const std::string& file : files) {
        int depth = 0, bitCount = 0;
        sources.push_back(ReadFirstImage(nullptr, file.c_str(), &depth));
        GetImageInfo(sources.back(), nullptr, nullptr, &bitCount, nullptr);
        bitCounts.push_back(bitCount);
        if (sources.size() == 1) firstDepth = depth;
    }
    if (settings.matching == PaletteMatching::kSuperPalette) {
        ExpectSharedPalette(sources, expected);
    } else {
        RgbTriple* palette = expected->palette.data();
        StandardPalette(palette, &expected->depth, settings.forWeb ? 6 : 7);
        if (settings.matching == PaletteMatching::kSixteenColours) StandardPalette(palette, &expected->depth, 2);
        if (settings.matching == PaletteMatching::kFirstPalette) {
            expected->palette = {};
            GetImageInfo(sources[0], nullptr, nullptr, nullptr, palette);
            expected->depth = firstDepth;
        }
        std::vector<uint8_t> table = LiteralInverseTable(palette);
        for (size_t i = 0; i < sources.size(); ++i) {
            bool dithered = settings.matching == PaletteMatching::kPhotorealistic && bitCounts[i] > 4;
            auto convert = dithered ? LiteralDither : LiteralRemap;
            expected->images.push_back(convert(sources[i], palette, expected->depth, table));
        }
    }
    for (MemoryHandle source : sources) FreeMemory(source);
}

}  // namespace

TEST_F(BuildAnimationTest, EveryMatchingGivesItsPaletteAndPixels) {
    AddUsualFiles();
    settings_.delayHundredths = 4711;
    for (PaletteMatching matching : kAllMatchings)
        for (bool forWeb : {false, true}) {
            SCOPED_TRACE(static_cast<int>(matching) * 10 + forWeb);
            settings_.matching = matching;
            settings_.forWeb = forWeb;
            settings_.loops = forWeb;
            const uint32_t frames = settings_.loops ? 2 : 1;
            Expected expected;
            Expect(settings_, files_, &expected);
            OwnedList document;
            ASSERT_EQ(Build(&document), BuildOutcome::kDone);

            EXPECT_EQ(KindsOf(document), settings_.loops ? "173232323232" : "13232323232");
            Block header = BlockAt(document, 0);
            EXPECT_EQ(memcmp(header.palette, expected.palette.data(), kPaletteBytes), 0);
            EXPECT_EQ(GetHeaderFields(header).packed, kHasPalette | (expected.depth - 1));
            EXPECT_EQ(GetHeaderFields(header).screenWidth, 30);
            EXPECT_EQ(GetHeaderFields(header).screenHeight, 12);
            for (uint32_t i = 0; i < files_.size(); ++i) {
                SCOPED_TRACE(i);
                EXPECT_EQ(GetControlFields(BlockAt(document, frames + 2 * i)).delay, 4711);
                Block image = BlockAt(document, frames + 2 * i + 1);
                EXPECT_TRUE(SameBitmap(image.data, expected.images[i]));
                char name[kNameBytes];
                EXPECT_TRUE(GetBlockName(name, image));
                EXPECT_EQ(name, files_[i]);
                EXPECT_EQ(image.position, frames + 2 * i + 1);
                EXPECT_EQ(image.owner, &document);
            }
        }
    EXPECT_TRUE(prompts.messages.empty());
}

TEST_F(BuildAnimationTest, SizeCodesOfImages) {
    AddUsualFiles();
    // The files share fewer than 64 colours; with a first palette of 5 bits, images still have 8.
    const int sizeCodes[] = {5, 7, 7, 7, 3};
    for (PaletteMatching matching : kAllMatchings) {
        settings_.matching = matching;
        OwnedList document;
        ASSERT_EQ(Build(&document), BuildOutcome::kDone);
        EXPECT_EQ(GetImageFields(BlockAt(document, 3)).packed, sizeCodes[static_cast<int>(matching)]);
    }
}

TEST_F(BuildAnimationTest, SuperPaletteOfFewColoursKeepsThemAll) {
    Palette colours = {{{200, 0, 0}, {0, 0, 90}, {255, 255, 255}, {1, 2, 3}, {0, 90, 0}}};
    OwnedMemory image(CreateImageBitmap(5, 1, colours.data(), 4));
    {
        MemoryLock lock(image.Get());
        for (int x = 0; x < 5; ++x) SetImagePixel(lock.As<BitmapHeader>(), x, 0, static_cast<uint32_t>(x));
    }
    AddPicture(image.Get(), 3);
    AddPicture(image.Get(), 3);
    OwnedList document;
    ASSERT_EQ(Build(&document), BuildOutcome::kDone);
    const RgbTriple darkestFirst[] = {{1, 2, 3}, {0, 0, 90}, {0, 90, 0}, {200, 0, 0}, {255, 255, 255}, {}};
    Block header = BlockAt(document, 0);
    for (int i = 0; i < 6; ++i) EXPECT_EQ(header.palette[i], darkestFirst[i]) << i;
    EXPECT_EQ(GetHeaderFields(header).packed & kSizeCode, 2);
    for (uint32_t index : {3u, 5u}) {
        Block block = BlockAt(document, index);
        EXPECT_EQ(PixelsOf(block), "31402");
        EXPECT_EQ(GetImageFields(block).packed, 2);
        EXPECT_EQ(block.palette[0], RgbTriple{}) << "colours of its own";
    }
    EXPECT_EQ(paletteChoiceForInsert, 108);
}

// A result of one bit can only tell the two by their luminance.
TEST_F(BuildAnimationTest, SuperPaletteOfTwoColoursKeepsBoth) {
    struct {
        RgbTriple first, second;
        int depth;
        const char* pixels;
    } cases[] = {
        {{0, 0, 0}, {255, 255, 255}, 1, "01"},       {{255, 255, 255}, {0, 0, 0}, 1, "10"},
        {{255, 0, 0}, {0, 0, 255}, 2, "10"},         {{255, 255, 0}, {0, 255, 0}, 2, "10"},
        {{255, 255, 255}, {255, 255, 255}, 2, "00"}, {{9, 9, 9}, {9, 9, 9}, 1, "00"},
    };
    for (const auto& c : cases) {
        Palette colours = {{c.first, c.second}};
        OwnedMemory image(CreateImageBitmap(2, 1, colours.data(), 4));
        {
            MemoryLock lock(image.Get());
            SetImagePixel(lock.As<BitmapHeader>(), 1, 0, 1);
        }
        files_.clear();
        AddPicture(image.Get(), 2);
        AddPicture(image.Get(), 2);
        OwnedList document;
        ASSERT_EQ(Build(&document), BuildOutcome::kDone);
        EXPECT_EQ(GetHeaderFields(BlockAt(document, 0)).packed & kSizeCode, c.depth - 1);
        EXPECT_EQ(PixelsOf(BlockAt(document, 5)), c.pixels);
    }
}

TEST_F(BuildAnimationTest, DelayIsThatOfNewBlocksWhenNoneIsChosen) {
    AddUsualFiles();
    OwnedList document;
    ASSERT_EQ(Build(&document), BuildOutcome::kDone);
    EXPECT_EQ(GetControlFields(BlockAt(document, 2)).delay, 1);
}

TEST_F(BuildAnimationTest, SkippedFileLeavesItsControl) {
    AddFile(3, 3, 8);
    AddBrokenFile();
    AddFile(2, 6, 8);
    AddBrokenFile();
    for (PaletteMatching matching : kAllMatchings) {
        settings_.matching = matching;
        prompts = {};
        prompts.yesNoAnswers = {kAnswerYes, kAnswerYes};
        OwnedList document;
        EXPECT_EQ(Build(&document), BuildOutcome::kDone);
        EXPECT_EQ(KindsOf(document), "17323323");
        EXPECT_EQ(result_.skipped, (std::vector<size_t>{1, 3}));
        EXPECT_EQ(prompts.messages, std::vector<std::string>(2, LoadStr(IDS_CORRUPTED_FILE)));
    }
}

TEST_F(BuildAnimationTest, NothingIsLeftOfABuildThatEndsEarly) {
    AddFile(3, 3, 8);
    AddFile(3, 3, 8);
    AddBrokenFile();
    AddFile(3, 3, 8);
    BlockList document = {};
    prompts.yesNoAnswers = {kAnswerNo};
    EXPECT_EQ(Build(&document), BuildOutcome::kCorruptedFileRefused);
    EXPECT_EQ(result_.file, 2u);
    EXPECT_EQ(document.blocks, nullptr);
    EXPECT_EQ(document.count, 0u);

    settings_.matching = PaletteMatching::kFirstPalette;
    files_.erase(files_.begin(), files_.begin() + 2);
    EXPECT_EQ(Build(&document), BuildOutcome::kFirstFileUnreadable);
    EXPECT_EQ(document.blocks, nullptr);
    EXPECT_EQ(prompts.messages.size(), 1u) << "the first file's palette is no question";
}

// Of 8 bits and of 4: dithered and remapped.
TEST_F(BuildAnimationTest, OnlyPhotorealisticConversionsAreStoppedByAClick) {
    for (int depth : {8, 4}) {
        files_.clear();
        AddFile(3, 3, depth);
        AddFile(3, 3, depth);
        for (PaletteMatching matching : kAllMatchings) {
            settings_.matching = matching;
            bool stops = matching == PaletteMatching::kPhotorealistic;
            input = {};
            input.pressAtPoll = 40000;  // in the second frame
            OwnedList document;
            EXPECT_EQ(Build(&document), stops ? BuildOutcome::kStoppedByUser : BuildOutcome::kDone);
            EXPECT_EQ(document.count, stops ? 0u : 6u);
            EXPECT_EQ(result_.file, 1u);
            EXPECT_EQ(input.polls, stops ? 40001 : 0);
        }
    }
}

TEST_F(BuildAnimationTest, ProgressNamesEveryFrame) {
    AddUsualFiles();
    OwnedList document;
    std::string told;
    BuildAnimation(nullptr, settings_, files_, &document,
                   [&](int frame, int count) { told += std::to_string(frame) + "/" + std::to_string(count) + " "; });
    EXPECT_EQ(told, "1/5 2/5 3/5 4/5 5/5 ");
}

// What a failed build has taken and not given back, the sanitizers would find.
TEST_F(BuildAnimationTest, ExhaustedMemoryLeavesNothing) {
    auto failEverywhere = [&](uint32_t blocks) {
        return ForEachFault(&Faults::allocationsUntilFailure, [&](FaultRound& round) {
            OwnedList document;
            BuildOutcome outcome = Build(&document);
            round.End();
            EXPECT_EQ(outcome == BuildOutcome::kDone, round.IsUndisturbed()) << round.Number();
            EXPECT_EQ(document.count, round.IsUndisturbed() ? blocks : 0u);
        });
    };
    AddFile(2, 2, 8);
    AddFile(2, 2, 4);
    for (PaletteMatching matching : kAllMatchings) {
        settings_.matching = matching;
        EXPECT_GT(failEverywhere(6), 10);
    }
    for (int i = 0; i < 32; ++i) AddFile(2, 2, 8);  // so many that the list grows on the way
    failEverywhere(70);
}
