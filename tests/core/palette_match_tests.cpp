#include "editing/palette_match.h"

#include <cstring>

#include "gif/image_import.h"
#include "imaging/dither.h"
#include "imaging/remap.h"
#include "platform/faults.h"
#include "tests/support/random_images.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/test_blocks.h"

namespace {

// An empty document of the 216 web colours, and an image to come into it.
class PaletteMatch : public testing::Test {
protected:
    PaletteMatch() {
        prompts = {};
        paletteChoiceForInsert = kAskForPalette;
        EXPECT_TRUE(NewDocument(&document_));
        FindGlobalPalette(document_, global_.data());
    }

    void TakeImage(int bitCount) {
        FreeBlock(&image_);
        image_.data = RandomImage(random_, 13, 6, bitCount, global_);
        GetImageInfo(image_.data, nullptr, nullptr, nullptr, image_.palette);
        memcpy(own_.data(), image_.palette, kPaletteBytes);
        PutImageFields(&image_, {1, 2, 0, 0, kImageInterlaced});
    }

    bool Match() { return MatchImportedPalette(nullptr, &document_, &image_); }
    bool HasPalette(const Palette& palette) const { return std::equal(palette.begin(), palette.end(), image_.palette); }

    Random random_{9};
    OwnedBlockList document_;
    OwnedBlock image_;
    Palette global_ = {}, own_ = {};
};

}  // namespace

TEST_F(PaletteMatch, EveryChoiceOnEveryBitCountAskedAndRemembered) {
    for (int depth : {4, 8}) {
        Block header = BlockAt(document_, 0);
        PutHeaderFields(&header, {640, 480, WithDepth(kHasPalette, depth), 0, 0});
        ASSERT_TRUE(PutBlock(&document_, header, 0));
        for (int bitCount : {1, 4, 8, 24})
            for (int choice : {kPaletteRemap, kPaletteDither, kPaletteCancel, kPaletteKeep})
                for (bool asked : {true, false}) {
                    SCOPED_TRACE(testing::Message() << depth << " " << bitCount << " " << choice << " " << asked);
                    TakeImage(bitCount);
                    if (asked) prompts.paletteChoices = {choice};
                    paletteChoiceForInsert = asked ? kAskForPalette : choice;
                    const bool converts = choice == kPaletteRemap || choice == kPaletteDither;
                    auto convert = choice == kPaletteDither && bitCount > 1 ? DitherImage : RemapImage;
                    OwnedMemory converted(convert(image_.data, global_.data(), depth, 0));
                    const MemoryHandle before = image_.data;
                    EXPECT_EQ(Match(), choice != kPaletteCancel);
                    EXPECT_TRUE(converts ? SameBitmap(image_.data, converted.Get()) : image_.data == before);
                    EXPECT_TRUE(HasPalette(converts ? global_ : own_));
                    EXPECT_TRUE(prompts.paletteChoices.empty());
                    EXPECT_TRUE(prompts.messages.empty());
                    if (choice == kPaletteCancel) continue;
                    int bits = bitCount;
                    if (converts) GetImageInfo(converted.Get(), nullptr, nullptr, &bits, nullptr);
                    const ImageFields fields = GetImageFields(image_);
                    EXPECT_EQ(fields.width, 13);
                    EXPECT_EQ(fields.height, 6);
                    EXPECT_EQ(fields.left, 1);
                    EXPECT_EQ(fields.packed, kImageInterlaced | ((bits - 1) & kSizeCode));
                }
    }
}

// Without a global palette an image has only its own, and nobody could read a file in which it has neither.
TEST_F(PaletteMatch, ImagesOfADocumentWithoutGlobalPaletteGetALocalOne) {
    Block header = BlockAt(document_, 0);
    PutHeaderFields(&header, {640, 480, 7, 0, 0});
    ASSERT_TRUE(PutBlock(&document_, header, 0));
    for (int bitCount : {1, 4, 8})
        for (int choice : {kPaletteRemap, kPaletteDither, kPaletteKeep, kPaletteKeepAsLocal}) {
            SCOPED_TRACE(testing::Message() << bitCount << " " << choice);
            TakeImage(bitCount);
            paletteChoiceForInsert = choice;
            EXPECT_TRUE(Match());
            const bool converts = choice == kPaletteRemap || choice == kPaletteDither;
            EXPECT_TRUE(HasPalette(converts ? global_ : own_)) << "the one that its indexes mean";
            EXPECT_EQ(GetImageFields(image_).packed & kHasPalette, kHasPalette);
        }
    FreeBlock(&image_);
    image_.data = CreateImageBitmap(2, 2, global_.data(), 8);
    EXPECT_TRUE(Match());
    EXPECT_EQ(GetImageFields(image_).packed, kHasPalette | 7) << "equal colours are not there to be shared";
}

TEST_F(PaletteMatch, KeptColoursAreLocalUnlessTheyAreTheGlobalOnes) {
    Palette twoColours = {};
    twoColours[0] = {1, 2, 3};
    // The document's colours and those of an image of 16 colours, of which 4 count; whether it needs its own.
    const std::tuple<int, Palette, Palette, bool> rows[] = {
        {2, twoColours, twoColours, false}, {1, twoColours, twoColours, true}, {8, global_, twoColours, true}};
    for (const auto& [depth, global, own, local] : rows) {
        SCOPED_TRACE(depth);
        Block header = BlockAt(document_, 0);
        memcpy(header.palette, global.data(), kPaletteBytes);
        PutHeaderFields(&header, {640, 480, WithDepth(kHasPalette, depth), 0, 0});
        ASSERT_TRUE(PutBlock(&document_, header, 0));
        FreeBlock(&image_);
        image_.data = CreateImageBitmap(2, 2, own.data(), 4);
        PutImageFields(&image_, {0, 0, 0, 0, WithDepth(0, 2)});
        paletteChoiceForInsert = kPaletteKeepAsLocal;
        EXPECT_TRUE(Match());
        EXPECT_EQ(GetImageFields(image_).packed, 3 | (local ? kHasPalette : 0));
    }
}

TEST_F(PaletteMatch, EqualPalettesAreNotAskedAbout) {
    for (int depth : {1, 4, 8}) {
        FreeBlock(&image_);
        image_.data = CreateImageBitmap(13, 6, global_.data(), depth);
        EXPECT_TRUE(Match()) << "asked, and so cancelled";
        EXPECT_EQ(GetImageFields(image_).packed, depth - 1);
    }
    // The last colour counts, also when no pixel has it.
    MemoryLock lock(image_.data);
    ImageColourTable(lock.As<BitmapHeader>())[255].blue ^= 1;
    EXPECT_FALSE(Match());
}

TEST_F(PaletteMatch, FailuresKeepTheImage) {
    paletteChoiceForInsert = kPaletteDither;
    TakeImage(8);
    const MemoryHandle before = image_.data;
    faults.allocationsUntilFailure = 0;
    EXPECT_FALSE(Match());
    faults = {};
    EXPECT_EQ(prompts.messages, std::vector<std::string>{LoadStr(IDS_OUT_OF_MEMORY)});
    EXPECT_EQ(image_.data, before);
    EXPECT_TRUE(HasPalette(own_));
    OwnedBlockList headless;
    EXPECT_FALSE(MatchImportedPalette(nullptr, &headless, &image_));
}
