#include "editing/animation_build.h"

#include <cstring>
#include <numeric>

#include "editing/palette_match.h"
#include "gif/first_image.h"
#include "imaging/dither.h"
#include "imaging/remap.h"
#include "imaging/standard_palette.h"
#include "platform/faults.h"
#include "tests/support/picture_files.h"
#include "tests/support/random_images.h"
#include "tests/support/scripted_input.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/test_blocks.h"

namespace {

constexpr PaletteMatching kAllMatchings[] = {PaletteMatching::kSuperPalette, PaletteMatching::kFirstPalette,
                                             PaletteMatching::kPhotorealistic, PaletteMatching::kDrawn,
                                             PaletteMatching::kSixteenColours};

class BuildAnimationTest : public testing::Test {
protected:
    BuildAnimationTest() { prompts = {}; }
    ~BuildAnimationTest() override { input = {}; }

    // A file of random pixels, `depth` bits a pixel.
    void AddFile(int width, int height, int depth) {
        OwnedMemory image(RandomImage(random_, width, height, BitCountForDepth(depth), Palette{}));
        AddPicture(image.Get(), depth);
    }
    void AddPicture(MemoryHandle image, int depth) {
        files_.push_back(folder_.Path(std::to_string(files_.size()) + ".gif"));
        WritePicture(files_.back(), image, depth);
    }

    // The picture of the file, by the conversion that the settings stand for.
    MemoryHandle Fitted(const std::string& file, const RgbTriple* palette, int depth) const {
        int fileDepth, bitCount = 0;
        OwnedMemory source(ReadFirstImage(nullptr, file.c_str(), &fileDepth));
        GetImageInfo(source.Get(), nullptr, nullptr, &bitCount, nullptr);
        if (settings_.matching == PaletteMatching::kSuperPalette) return RemapTrueColours(source.Get(), palette, depth);
        const bool dithered = settings_.matching == PaletteMatching::kPhotorealistic && bitCount > 4;
        return (dithered ? DitherImage : RemapImage)(source.Get(), palette, depth, 0);
    }

    BuildOutcome Build(BlockList* document) {
        auto tell = [&](int frame, int count) { told_ += std::to_string(frame) + "/" + std::to_string(count) + " "; };
        told_.clear();
        return BuildAnimation(nullptr, settings_, files_, document, tell).outcome;
    }

    Random random_{4};
    TempFolder folder_;
    std::vector<std::string> files_;
    AnimationSettings settings_;
    std::string told_;
};

}  // namespace

TEST_F(BuildAnimationTest, EveryMatchingGivesItsPaletteAndPixels) {
    const int sizes[][3] = {{9, 5, 5}, {4, 12, 1}, {7, 3, 4}, {30, 2, 8}, {3, 3, 2}};
    for (const auto& [width, height, depth] : sizes) AddFile(width, height, depth);
    Palette first = {};
    int firstDepth;
    OwnedMemory firstImage(ReadFirstImage(nullptr, files_[0].c_str(), &firstDepth));
    GetImageInfo(firstImage.Get(), nullptr, nullptr, nullptr, first.data());
    for (PaletteMatching matching : kAllMatchings)
        for (bool forWeb : {false, true}) {
            SCOPED_TRACE(static_cast<int>(matching) * 10 + forWeb);
            settings_ = {forWeb, forWeb, matching, forWeb ? 4711 : kDelayOfNewBlocks};
            OwnedBlockList document;
            ASSERT_EQ(Build(&document), BuildOutcome::kDone);
            EXPECT_EQ(told_, "1/5 2/5 3/5 4/5 5/5 ");
            EXPECT_EQ(KindsOf(document), forWeb ? "173232323232" : "13232323232");

            const Block header = BlockAt(document, 0);
            const HeaderFields fields = GetHeaderFields(header);
            const bool super = matching == PaletteMatching::kSuperPalette;
            Palette palette = first;
            int depth = super ? 6 : firstDepth;  // all files together have fewer than 64 colours
            if (matching == PaletteMatching::kSixteenColours) StandardPalette(palette.data(), &depth, kPaletteSixteen);
            if (matching == PaletteMatching::kPhotorealistic || matching == PaletteMatching::kDrawn)
                StandardPalette(palette.data(), &depth, forWeb ? kPaletteWeb : kPaletteCube);
            if (!super) {
                EXPECT_EQ(memcmp(header.palette, palette.data(), kPaletteBytes), 0);
            }
            EXPECT_EQ(fields.packed, kHasPalette | (depth - 1));
            EXPECT_EQ(fields.screenWidth, 30);
            EXPECT_EQ(fields.screenHeight, 12);

            uint32_t at = forWeb ? 2 : 1;
            for (const std::string& file : files_) {
                SCOPED_TRACE(at);
                EXPECT_EQ(GetControlFields(BlockAt(document, at++)).delay, forWeb ? 4711 : 1);
                const Block image = BlockAt(document, at);
                int bits = depth;
                OwnedMemory fitted(Fitted(file, header.palette, depth));
                if (!super) GetImageInfo(fitted.Get(), nullptr, nullptr, &bits, nullptr);
                EXPECT_TRUE(SameBitmap(image.data, fitted.Get()));
                EXPECT_EQ(GetImageFields(image).packed, bits - 1);
                EXPECT_EQ(NameOf(image), file);
                EXPECT_EQ(image.position, at++);
                EXPECT_EQ(image.owner, &document);
            }
        }
    EXPECT_TRUE(prompts.messages.empty());
}

// A result of one bit could only tell two colours by their luminance.
TEST_F(BuildAnimationTest, SuperPaletteKeepsFewColours) {
    const RgbTriple black = {}, white = {255, 255, 255}, red = {255, 0, 0}, blue = {0, 0, 255}, grey = {9, 9, 9};
    using Colours = std::vector<RgbTriple>;
    const std::tuple<Colours, Colours, int, const char*> cases[] = {
        {{black, white}, {black, white}, 1, "01"},
        {{red, blue}, {blue, red}, 2, "10"},
        {{grey, grey}, {grey, black}, 1, "00"},
        {{red, blue, white, grey}, {grey, blue, red, white}, 2, "2130"},
        {{red, blue, white, grey, {0, 90, 0}}, {grey, blue, {0, 90, 0}, red, white, black}, 3, "31402"},
    };
    for (const auto& [colours, darkestFirst, depth, pixels] : cases) {
        Palette palette = {};
        std::copy(colours.begin(), colours.end(), palette.begin());
        std::vector<uint32_t> ofEach(colours.size());
        std::iota(ofEach.begin(), ofEach.end(), 0u);
        OwnedMemory image(MakeRow(4, ofEach, palette.data()));
        files_.clear();
        for (int i = 0; i < 2; ++i) AddPicture(image.Get(), 4);
        OwnedBlockList document;
        ASSERT_EQ(Build(&document), BuildOutcome::kDone);
        const Block header = BlockAt(document, 0), frame = BlockAt(document, 5);
        EXPECT_TRUE(std::equal(darkestFirst.begin(), darkestFirst.end(), header.palette)) << pixels;
        EXPECT_EQ(GetHeaderFields(header).packed & kSizeCode, depth - 1);
        EXPECT_EQ(PixelsOf(frame), pixels);
        EXPECT_EQ(frame.palette[0], black) << "colours of its own";
        EXPECT_EQ(paletteChoiceForInsert, kPaletteKeep);
    }
}

// Of 8 bits and of 4: dithered and remapped.
TEST_F(BuildAnimationTest, OnlyPhotorealisticConversionsAreStoppedByAClick) {
    for (int depth : {8, 4}) {
        files_.clear();
        for (int i = 0; i < 2; ++i) AddFile(3, 3, depth);
        for (PaletteMatching matching : kAllMatchings) {
            settings_.matching = matching;
            const bool stops = matching == PaletteMatching::kPhotorealistic;
            input = {};
            input.pressAtPoll = 40000;  // in the second frame
            OwnedBlockList document;
            EXPECT_EQ(Build(&document), stops ? BuildOutcome::kStoppedByUser : BuildOutcome::kDone);
            EXPECT_EQ(input.polls, stops ? 40001 : 0);
        }
    }
}

// What a failed build has taken and not given back, the sanitizers would find.
TEST_F(BuildAnimationTest, FramesThatTheListHasNoRoomForAreReleased) {
    constexpr long kEnough = 1'000'000;
    settings_.matching = PaletteMatching::kFirstPalette;
    for (int i = 0; i < 32; ++i) AddFile(2, 2, 8);  // so many that the list has to grow
    auto blocksWithRequests = [&](long n) {
        OwnedBlockList document;
        faults.allocationsUntilFailure = n;
        EXPECT_EQ(Build(&document) == BuildOutcome::kDone, n == kEnough) << n;
        return document.count;
    };
    EXPECT_EQ(blocksWithRequests(kEnough), 66u);
    const long wanted = kEnough - faults.allocationsUntilFailure;
    for (long n = wanted - 60; n < wanted; ++n) EXPECT_EQ(blocksWithRequests(n), 0u);
    faults = {};
}
