#include "editing/palette_match.h"

#include <gtest/gtest.h>

#include <cstring>

#include "gif/default_blocks.h"
#include "gif/descriptor.h"
#include "gif/image_import.h"
#include "imaging/dither.h"
#include "imaging/remap.h"
#include "imaging/standard_palette.h"
#include "platform/faults.h"
#include "platform/prompts.h"
#include "resources/string_ids.h"
#include "tests/support/random_images.h"
#include "tests/support/scripted_prompts.h"

namespace {

constexpr int kWidth = 13, kHeight = 6;

// An empty document of the 216 web colours, and an image to come into it.
class PaletteMatch : public testing::Test {
protected:
    PaletteMatch() {
        prompts = {};
        paletteChoiceForInsert = kAskForPalette;
        EXPECT_TRUE(NewDocument(&document_));
        FindGlobalPalette(document_, global_.data());
    }
    ~PaletteMatch() override {
        FreeBlock(&image_);
        DestroyBlockList(&document_);
        faults = {};
    }

    void TakeImage(int bitCount) {
        FreeBlock(&image_);
        image_.kind = kImageBlock;
        image_.data = RandomImage(random_, kWidth, kHeight, bitCount, global_);
        GetImageInfo(image_.data, nullptr, nullptr, nullptr, image_.palette);
        memcpy(own_.data(), image_.palette, sizeof own_);
        PutImageFields(&image_, {1, 2, 0, 0, kImageInterlaced});
        image_.owner = &document_;
    }

    bool Match() { return MatchImportedPalette(nullptr, &document_, &image_); }
    bool HasPalette(const Palette& palette) const { return memcmp(image_.palette, palette.data(), kPaletteBytes) == 0; }

    Random random_{9};
    BlockList document_ = {};
    Block image_ = {};
    Palette global_ = {}, own_ = {};
};

}  // namespace

TEST_F(PaletteMatch, EveryChoiceOnEveryBitCount) {
    constexpr int kKeep = 104;
    for (int bitCount : {1, 4, 8, 24})
        for (int choice : {kPaletteRemap, kPaletteDither, kPaletteCancel, kKeep}) {
            TakeImage(bitCount);
            prompts.paletteChoices = {choice};
            bool dithered = choice == kPaletteDither && bitCount > 1;
            OwnedMemory converted((dithered ? DitherImage : RemapImage)(image_.data, global_.data(), 8, 0));
            bool converts = choice == kPaletteRemap || choice == kPaletteDither;
            MemoryHandle before = image_.data;

            EXPECT_EQ(Match(), choice != kPaletteCancel);
            EXPECT_TRUE(prompts.paletteChoices.empty()) << "the user was not asked";
            EXPECT_TRUE(prompts.messages.empty());
            if (converts)
                EXPECT_TRUE(SameBitmap(image_.data, converted.Get())) << bitCount << ", " << choice;
            else
                EXPECT_EQ(image_.data, before);
            EXPECT_TRUE(HasPalette(converts ? global_ : own_));
            if (choice == kPaletteCancel) continue;
            ImageFields fields = GetImageFields(image_);
            EXPECT_EQ(fields.width, kWidth);
            EXPECT_EQ(fields.height, kHeight);
            EXPECT_EQ(fields.left, 1);
            EXPECT_EQ(fields.packed, kImageInterlaced | (((converts ? 8 : bitCount) - 1) & 7));
        }
}

TEST_F(PaletteMatch, EqualPalettesAreNotAskedAbout) {
    for (int depth : {1, 4, 8}) {
        FreeBlock(&image_);
        image_.data = CreateImageBitmap(kWidth, kHeight, global_.data(), depth);
        EXPECT_TRUE(Match()) << "asked, and so cancelled";
        EXPECT_EQ(GetImageFields(image_).packed, depth - 1);
    }
    // The last colour counts, also when no pixel has it.
    MemoryLock lock(image_.data);
    ImageColourTable(lock.As<BitmapHeader>())[255].blue ^= 1;
    EXPECT_FALSE(Match());
}

TEST_F(PaletteMatch, ResultHasTheDepthOfTheHeader) {
    Block header;
    ASSERT_TRUE(GetBlock(document_, &header, 0));
    HeaderFields fields = GetHeaderFields(header);
    fields.packed = kHasPalette | 3;
    PutHeaderFields(&header, fields);
    ASSERT_TRUE(PutBlock(&document_, header, 0));
    TakeImage(8);
    prompts.paletteChoices = {kPaletteRemap};
    EXPECT_TRUE(Match());
    EXPECT_EQ(GetImageFields(image_).packed & kSizeCode, 3);
}

TEST_F(PaletteMatch, RememberedChoiceIsNotAskedAgain) {
    TakeImage(24);
    paletteChoiceForInsert = kPaletteDither;
    EXPECT_TRUE(Match());
    EXPECT_TRUE(HasPalette(global_));
    TakeImage(24);
    paletteChoiceForInsert = 7;  // any other: keep
    EXPECT_TRUE(Match());
    EXPECT_TRUE(HasPalette(own_));
}

TEST_F(PaletteMatch, ExhaustedMemoryIsToldAndKeepsTheImage) {
    for (int choice : {kPaletteRemap, kPaletteDither}) {
        prompts = {};
        prompts.paletteChoices = {choice};
        TakeImage(8);
        MemoryHandle before = image_.data;
        faults.allocationsUntilFailure = 0;
        EXPECT_FALSE(Match());
        faults = {};
        EXPECT_EQ(prompts.messages, std::vector<std::string>{LoadStr(IDS_OUT_OF_MEMORY)});
        EXPECT_EQ(image_.data, before);
        EXPECT_TRUE(HasPalette(own_));
    }
}

TEST_F(PaletteMatch, DocumentWithoutHeaderTakesNoImage) {
    TakeImage(8);
    BlockList empty = {};
    EXPECT_FALSE(MatchImportedPalette(nullptr, &empty, &image_));
    EXPECT_TRUE(prompts.messages.empty());
}
