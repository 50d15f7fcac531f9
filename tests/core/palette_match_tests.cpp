#include "editing/palette_match.h"

#include <algorithm>

#include "gif/default_blocks.h"
#include "imaging/dither.h"
#include "imaging/remap.h"
#include "platform/faults.h"
#include "tests/support/picture_files.h"
#include "tests/support/random_images.h"
#include "tests/support/scripted_answers.h"
#include "tests/support/test_blocks.h"

namespace {

using enum PaletteChoice;

// An empty document of the 216 web colours, and an image to come into it.
class PaletteMatch : public testing::Test {
protected:
    PaletteMatch() {
        EXPECT_TRUE(NewDocument(&document_));
        std::copy_n(document_.blocks[0].palette.Colours(), kPaletteEntries, global_.begin());
    }

    void SetGlobalPalette(int packed) {
        PutHeaderFields(&document_.blocks[0], {640, 480, static_cast<uint8_t>(packed), 0, 0});
    }

    void TakeImage(const MemoryHandle& bitmap) {
        image_ = *MakeImageBlock(&document_, bitmap);
        std::copy_n(image_.palette.Colours(), kPaletteEntries, own_.begin());
        PutImageFields(&image_, {1, 2, 0, 0, kImageInterlaced});
    }
    void TakeImage(int bitCount) { TakeImage(RandomImage(random_, 13, 6, bitCount, global_)); }

    Failure Match(PaletteChoice choice = kCancel, bool keepsColours = false) {
        ScriptedAnswers answers;
        answers.paletteChoices = {choice};
        answers.keepsColours = keepsColours;
        answers.pressAtPoll = 0;  // nobody looks
        Failure failure = MatchImportedPalette(document_, &image_, answers);
        wasAsked_ = answers.paletteChoices.empty();
        return failure;
    }
    bool HasPalette(const Colours& palette) const {
        return std::equal(palette.begin(), palette.end(), image_.palette.Colours());
    }

    Random random_{9};
    BlockList document_;
    Block image_;
    Colours global_ = {}, own_ = {};
    bool wasAsked_ = false;
};

}  // namespace

TEST_F(PaletteMatch, EveryChoiceOnEveryBitCount) {
    for (int depth : {4, 8}) {
        SetGlobalPalette(WithDepth(kHasPalette, depth));
        for (int bitCount : {1, 4, 8, 24})
            for (PaletteChoice choice : {kRemap, kDither, kCancel, kKeepPixels}) {
                SCOPED_TRACE(testing::Message() << depth << " " << bitCount << " " << static_cast<int>(choice));
                TakeImage(bitCount);
                const bool converts = choice == kRemap || choice == kDither;
                auto convert = choice == kDither && bitCount > 1 ? DitherImage : RemapImage;
                const MemoryHandle before = image_.data;
                const MemoryHandle converted = *convert(before, global_.data(), depth, nullptr);
                EXPECT_EQ(Match(choice), choice == kCancel ? Failure::kCancelled : Failure::kNone);
                EXPECT_TRUE(wasAsked_);
                EXPECT_TRUE(converts ? SameBitmap(image_.data, converted) : image_.data == before);
                EXPECT_TRUE(HasPalette(converts ? global_ : own_));
                if (choice == kCancel) continue;
                const ImageFields fields = GetImageFields(image_);
                EXPECT_EQ(fields.width, 13);
                EXPECT_EQ(fields.height, 6);
                EXPECT_EQ(fields.left, 1);
                const int bits = converts ? GetImageInfo(converted)->bitCount : bitCount;
                EXPECT_EQ(fields.packed, kImageInterlaced | ((bits - 1) & kSizeCode));
            }
    }
}

// Where kQuirkKeptPixelsLoseColours ends.
// Without a global palette an image has only its own, and nobody could read a file in which it has neither.
TEST_F(PaletteMatch, ImagesOfADocumentWithoutGlobalPaletteGetALocalOne) {
    SetGlobalPalette(7);
    for (int bitCount : {1, 4, 8})
        for (const auto& [choice, keepsColours] :
             {std::pair{kRemap, false}, {kDither, false}, {kKeepPixels, false}, {kRemap, true}}) {
            SCOPED_TRACE(testing::Message() << bitCount << " " << static_cast<int>(choice) << keepsColours);
            TakeImage(bitCount);
            EXPECT_EQ(Match(choice, keepsColours), Failure::kNone);
            EXPECT_EQ(wasAsked_, !keepsColours);
            const bool converts = choice != kKeepPixels && !keepsColours;
            EXPECT_TRUE(HasPalette(converts ? global_ : own_)) << "the one that its indexes mean";
            EXPECT_EQ(GetImageFields(image_).packed & kHasPalette, kHasPalette);
        }
    image_ = OfKind(kImageBlock);
    image_.data = CreateImageBitmap(2, 2, global_.data(), 8);
    EXPECT_EQ(Match(), Failure::kNone);
    EXPECT_EQ(GetImageFields(image_).packed, kHasPalette | 7) << "equal colours are not there to be shared";
}

TEST_F(PaletteMatch, ADocumentReadWholeWithoutGlobalPaletteAsksNothing) {
    document_.flags = kReadWhole;
    for (const auto& [packed, bitCount, asks] :
         {std::tuple(7, 1, false), {7, 4, false}, {7, 8, false}, {0x87, 8, true}, {0x87, 24, true}}) {
        SCOPED_TRACE(testing::Message() << packed << " " << bitCount);
        SetGlobalPalette(packed);
        TakeImage(bitCount);
        const MemoryHandle before = image_.data;
        EXPECT_EQ(Match(kCancel), asks ? Failure::kCancelled : Failure::kNone);
        if (asks) continue;
        EXPECT_EQ(image_.data, before);
        EXPECT_TRUE(HasPalette(own_));
        EXPECT_EQ(GetImageFields(image_).packed, kHasPalette | kImageInterlaced | (bitCount - 1));
    }
}

TEST_F(PaletteMatch, KeptColoursAreLocalUnlessTheyAreTheGlobalOnes) {
    const Colours twoColours = {{{1, 2, 3}}};
    // The document's colours and those of an image of 16 colours, of which 4 count; whether it needs its own.
    const std::tuple<int, Colours, Colours, bool> rows[] = {
        {2, twoColours, twoColours, false}, {1, twoColours, twoColours, true}, {8, global_, twoColours, true}};
    for (const auto& [depth, global, own, local] : rows) {
        SCOPED_TRACE(depth);
        SetGlobalPalette(WithDepth(kHasPalette, depth));
        ASSERT_TRUE(document_.blocks[0].palette.Set(global));
        TakeImage(CreateImageBitmap(2, 2, own.data(), 4));
        PutImageFields(&image_, {0, 0, 0, 0, WithDepth(0, 2)});
        EXPECT_EQ(Match(kCancel, true), Failure::kNone);
        EXPECT_EQ(GetImageFields(image_).packed, 3 | (local ? kHasPalette : 0));
    }
}

TEST_F(PaletteMatch, EqualPalettesAreNotAskedAbout) {
    for (int depth : {1, 4, 8}) {
        TakeImage(CreateImageBitmap(13, 6, global_.data(), depth));
        EXPECT_EQ(Match(), Failure::kNone) << "asked, and so cancelled";
        EXPECT_EQ(GetImageFields(image_).packed, kImageInterlaced | (depth - 1));
    }
    // The last colour counts, also when no pixel has it.
    ImageColourTable(ImageWriteLock(&image_.data))[255].blue ^= 1;
    EXPECT_EQ(Match(), Failure::kCancelled);
}

TEST_F(PaletteMatch, FailuresKeepTheImage) {
    TakeImage(8);
    const MemoryHandle before = image_.data;
    faults.allocationsUntilFailure = 0;
    EXPECT_EQ(Match(kDither), Failure::kNoMemory);
    faults = {};
    EXPECT_EQ(image_.data, before);
    EXPECT_TRUE(HasPalette(own_));
    document_ = {};
    EXPECT_EQ(Match(kDither), Failure::kNoBlock);
}

namespace {

// 300 colours and some nothing.
std::vector<uint32_t> ManyPixels() {
    std::vector<uint32_t> pixels = {0, 0};
    for (uint32_t i = 0; i < 300; ++i) pixels.push_back(0xFF000000u | i * 40503u % 0x1000000u);
    return pixels;
}

}  // namespace

TEST_F(PaletteMatch, ATransparentPictureComesWithItsControl) {
    TempFolder folder;
    const std::string few = folder.Path("few.png"), many = folder.Path("many.png"), opaque = folder.Path("opaque.png");
    WriteColouredPng(few, 2, {0xFF000000u, 0, 0xFF0000FFu, 0xFF010203u});
    WriteColouredPng(many, 2, ManyPixels());
    WriteColouredPng(opaque, 1, {0xFF000000u, 0xFF0000FFu});
    const std::tuple<std::string, PaletteChoice, bool, bool, int> cases[] = {
        // The file, the answer, --keep, whether it comes with a palette of its own, the depth.
        {few, kRemap, false, false, 8},  {few, kDither, false, false, 8},  {few, kCancel, true, true, 4},
        {many, kRemap, false, false, 8}, {many, kDither, false, false, 8}, {many, kCancel, true, true, 8},
    };
    for (const auto& [path, choice, keeps, hasPalette, depth] : cases) {
        SCOPED_TRACE(path + " " + std::to_string(static_cast<int>(choice)) + std::to_string(keeps));
        ScriptedAnswers answers;
        answers.paletteChoices = {choice};
        answers.keepsColours = keeps;
        const Result<std::vector<Block>> blocks = ImportImage(&document_, path, answers);
        ASSERT_TRUE(static_cast<bool>(blocks));
        ASSERT_EQ(blocks->size(), 2u);
        const Block& image = blocks->back();
        const ControlFields control = GetControlFields(blocks->front());
        EXPECT_EQ(blocks->front().kind, kControlBlock);
        EXPECT_EQ(control.packed, kControlTransparent);
        EXPECT_EQ(GetImageFields(image).packed, (hasPalette ? kHasPalette : 0) | (depth - 1));
        ImageLock bitmap(image.data);
        ASSERT_LE(bitmap->bitCount, 8) << "it can be saved";
        size_t clear = 0;
        for (int y = 0; y < bitmap->height; ++y)
            for (int x = 0; x < bitmap->width; ++x) clear += GetImagePixel(bitmap, x, y) == control.transparentIndex;
        EXPECT_EQ(clear, path == few ? 1u : 2u);
    }
    ScriptedAnswers answers;
    answers.keepsColours = true;
    EXPECT_EQ(ImportImage(&document_, opaque, answers)->size(), 1u);
}

TEST_F(PaletteMatch, TrueColoursWithoutAnythingToFitToGetAPaletteOfTheirOwn) {
    document_.flags = kReadWhole;
    SetGlobalPalette(7);
    TakeImage(24);
    EXPECT_EQ(Match(kCancel), Failure::kNone) << "unasked";
    EXPECT_EQ(GetImageFields(image_).packed & kHasPalette, kHasPalette);
    ImageLock bitmap(image_.data);
    EXPECT_LE(bitmap->bitCount, 8);
    RgbTriples colours = {};
    const int count = GetImagePalette(bitmap, colours);
    EXPECT_TRUE(std::equal(colours, colours + count, image_.palette.Colours()));
}
