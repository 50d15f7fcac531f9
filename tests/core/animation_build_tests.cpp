#include "editing/animation_build.h"

#include <algorithm>
#include <numeric>

#include "gif/first_image.h"
#include "imaging/dither.h"
#include "imaging/remap.h"
#include "imaging/standard_palette.h"
#include "platform/faults.h"
#include "tests/support/picture_files.h"
#include "tests/support/random_images.h"
#include "tests/support/scripted_answers.h"
#include "tests/support/test_blocks.h"

namespace {

constexpr PaletteMatching kAllMatchings[] = {PaletteMatching::kSuperPalette, PaletteMatching::kFirstPalette,
                                             PaletteMatching::kPhotorealistic, PaletteMatching::kDrawn,
                                             PaletteMatching::kSixteenColours};

class BuildAnimationTest : public testing::Test {
protected:
    // A file of random pixels, `depth` bits a pixel.
    void AddFile(int width, int height, int depth) {
        AddPicture(RandomImage(random_, width, height, BitCountForDepth(depth), Colours{}), depth);
    }
    void AddPicture(const MemoryHandle& image, int depth) {
        files_.push_back(folder_.Path(std::to_string(files_.size()) + ".gif"));
        WritePicture(files_.back(), image, depth);
    }

    // The picture of the file, by the conversion that the settings stand for.
    MemoryHandle Fitted(const std::string& file, const RgbTriple* palette, int depth) const {
        const MemoryHandle source = ReadFirstImage(file)->bitmap;
        if (settings_.matching == PaletteMatching::kSuperPalette) return *RemapTrueColours(source, palette, depth);
        const bool dithered =
            settings_.matching == PaletteMatching::kPhotorealistic && GetImageInfo(source)->bitCount > 4;
        return *(dithered ? DitherImage : RemapImage)(source, palette, depth, nullptr);
    }

    BuildOutcome Build(BlockList* document) { return BuildAnimation(settings_, files_, document, answers_).outcome; }

    Random random_{4};
    TempFolder folder_;
    std::vector<std::string> files_;
    AnimationSettings settings_;
    ScriptedAnswers answers_;
};

}  // namespace

TEST_F(BuildAnimationTest, EveryMatchingGivesItsPaletteAndPixels) {
    const int sizes[][3] = {{9, 5, 5}, {4, 12, 1}, {7, 3, 4}, {30, 2, 8}, {3, 3, 2}};
    for (const auto& [width, height, depth] : sizes) AddFile(width, height, depth);
    Colours first = {};
    Result<FirstImage> firstImage = ReadFirstImage(files_[0]);
    GetImagePalette(ImageLock(firstImage->bitmap), first.data());
    for (PaletteMatching matching : kAllMatchings)
        for (bool forWeb : {false, true}) {
            SCOPED_TRACE(static_cast<int>(matching) * 10 + forWeb);
            settings_ = {forWeb, forWeb, matching, forWeb ? 4711 : kDelayOfNewBlocks};
            answers_ = {};
            BlockList document;
            ASSERT_EQ(Build(&document), BuildOutcome::kDone);
            EXPECT_EQ(answers_.told, "1/5 2/5 3/5 4/5 5/5 ");
            EXPECT_EQ(KindsOf(document), forWeb ? "173232323232" : "13232323232");

            const Block header = BlockAt(document, 0);
            const HeaderFields fields = GetHeaderFields(header);
            const bool super = matching == PaletteMatching::kSuperPalette;
            Colours palette = first;
            int depth = super ? 6 : firstImage->depth;  // all files together have fewer than 64 colours
            if (matching == PaletteMatching::kSixteenColours) StandardPalette(palette.data(), &depth, kPaletteSixteen);
            if (matching == PaletteMatching::kPhotorealistic || matching == PaletteMatching::kDrawn)
                StandardPalette(palette.data(), &depth, forWeb ? kPaletteWeb : kPaletteCube);
            if (!super) {
                EXPECT_TRUE(std::equal(palette.begin(), palette.end(), header.palette.Colours()));
            }
            EXPECT_EQ(fields.packed, kHasPalette | (depth - 1));
            EXPECT_EQ(fields.screenWidth, 30);
            EXPECT_EQ(fields.screenHeight, 12);

            uint32_t at = forWeb ? 2 : 1;
            for (const std::string& file : files_) {
                SCOPED_TRACE(at);
                EXPECT_EQ(GetControlFields(BlockAt(document, at++)).delay, forWeb ? 4711 : 1);
                const Block image = BlockAt(document, at);
                const MemoryHandle fitted = Fitted(file, header.palette, depth);
                const int bits = super ? depth : GetImageInfo(fitted)->bitCount;
                EXPECT_TRUE(SameBitmap(image.data, fitted));
                EXPECT_EQ(GetImageFields(image).packed, bits - 1);
                EXPECT_EQ(NameOf(image), file);
                EXPECT_EQ(image.position, at++);
                EXPECT_EQ(image.owner, &document);
            }
        }
}

// kQuirkSharedPaletteDarkestFirst, kQuirkDepthOfLikeColours.
// A result of one bit could only tell two colours by their luminance.
TEST_F(BuildAnimationTest, SuperPaletteKeepsFewColours) {
    const RgbTriple black = {}, white = {255, 255, 255}, red = {255, 0, 0}, blue = {0, 0, 255}, grey = {9, 9, 9};
    using List = std::vector<RgbTriple>;
    const std::tuple<List, List, int, const char*> cases[] = {
        {{black, white}, {black, white}, 1, "01"},
        {{red, blue}, {blue, red}, 2, "10"},
        {{grey, grey}, {grey, black}, 1, "00"},
        {{red, blue, white, grey}, {grey, blue, red, white}, 2, "2130"},
        {{red, blue, white, grey, {0, 90, 0}}, {grey, blue, {0, 90, 0}, red, white, black}, 3, "31402"},
    };
    for (const auto& [colours, darkestFirst, depth, pixels] : cases) {
        Colours palette = {};
        std::copy(colours.begin(), colours.end(), palette.begin());
        std::vector<uint32_t> ofEach(colours.size());
        std::iota(ofEach.begin(), ofEach.end(), 0u);
        MemoryHandle image = MakeRow(4, ofEach, palette.data());
        files_.clear();
        for (int i = 0; i < 2; ++i) AddPicture(image, 4);
        BlockList document;
        ASSERT_EQ(Build(&document), BuildOutcome::kDone);
        const Block header = BlockAt(document, 0), frame = BlockAt(document, 5);
        EXPECT_TRUE(std::equal(darkestFirst.begin(), darkestFirst.end(), header.palette.Colours())) << pixels;
        EXPECT_EQ(GetHeaderFields(header).packed & kSizeCode, depth - 1);
        EXPECT_EQ(PixelsOf(frame), pixels);
        EXPECT_FALSE(frame.palette.HasColours()) << "colours of its own";
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
            answers_ = {};
            answers_.pressAtPoll = 40000;  // in the second frame
            BlockList document;
            EXPECT_EQ(Build(&document), stops ? BuildOutcome::kStoppedByUser : BuildOutcome::kDone);
            EXPECT_EQ(answers_.polls, stops ? 40001 : 0);
        }
    }
}

TEST_F(BuildAnimationTest, FilesWithoutAnImageAreAskedAbout) {
    AddFile(3, 3, 8);
    WriteAll(folder_.Path("text"), "no picture");
    files_.insert(files_.end(), {folder_.Path("text"), folder_.Path("missing"), files_[0]});
    for (bool leavesOut : {true, false}) {
        answers_ = {};
        answers_.leavesOut = leavesOut;
        BlockList document;
        const BuildResult result = BuildAnimation(settings_, files_, &document, answers_);
        EXPECT_EQ(result.outcome, leavesOut ? BuildOutcome::kDone : BuildOutcome::kFileRefused);
        EXPECT_EQ(result.why, leavesOut ? Failure::kNone : Failure::kNotGif);
        EXPECT_EQ(result.file, leavesOut ? 3u : 1u);
        EXPECT_EQ(result.skipped, leavesOut ? (std::vector<size_t>{1, 2}) : std::vector<size_t>{});
        EXPECT_EQ(KindsOf(document), leavesOut ? "17323332" : "") << "the controls stay";
        answers_.unwelcome.resize(2);
        EXPECT_EQ(answers_.unwelcome[0], Failure::kNotGif);
        EXPECT_EQ(answers_.unwelcome[1], leavesOut ? Failure::kCantOpen : Failure::kNone);
    }
}

TEST_F(BuildAnimationTest, WithoutMemoryTheDocumentStays) {
    constexpr long kEnough = 1'000'000;
    long left = 0;
    settings_.matching = PaletteMatching::kFirstPalette;
    for (int i = 0; i < 32; ++i) AddFile(2, 2, 8);  // so many that the list has to grow
    auto blocksWithRequests = [&](long n) {
        BlockList document;
        Append(&document, OfKind(kControlBlock));
        faults.allocationsUntilFailure = n;
        EXPECT_EQ(Build(&document) == BuildOutcome::kDone, n == kEnough) << n;
        left = faults.allocationsUntilFailure;
        faults = {};
        return document.count;
    };
    EXPECT_EQ(blocksWithRequests(kEnough), 66u);
    const long wanted = kEnough - left;
    for (long n = wanted - 60; n < wanted; ++n) EXPECT_EQ(blocksWithRequests(n), 1u);
}
