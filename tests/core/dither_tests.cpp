#include "imaging/dither.h"

#include <gtest/gtest.h>

#include "imaging/standard_palette.h"
#include "platform/faults.h"
#include "tests/support/literal_colours.h"
#include "tests/support/random_images.h"
#include "tests/support/scripted_input.h"

namespace {

constexpr long kTablePolls = 32768;

std::string Picture(MemoryHandle image) {
    MemoryLock lock(image);
    auto* bitmap = lock.As<const BitmapHeader>();
    std::string text;
    for (int y = 0; bitmap && y < bitmap->height; ++y) {
        for (int x = 0; x < bitmap->width; ++x) text += "0123456789ABCDEF"[GetImagePixel(bitmap, x, y) & 15];
        text += '|';
    }
    return text;
}

MemoryHandle GreyImage(int width, int height, uint8_t grey) {
    Palette colours = {};
    colours[0] = {grey, grey, grey};
    return CreateImageBitmap(width, height, colours.data(), 8);
}

}  // namespace

TEST(DitherImage, EqualsThePlainForm) {
    Random random(5);
    for (const Palette& palette : TestPalettes(random)) {
        std::vector<uint8_t> table = LiteralInverseTable(palette.data());
        for (int i = 0; i < 200; ++i) {
            const int bitCounts[] = {1, 4, 8, 24};
            int bitCount = bitCounts[i % 4], depth = i % 3 ? 1 + i / 4 % 8 : 1;
            int width = i < 64 ? i / 12 : static_cast<int>(random() % 40), height = static_cast<int>(random() % 9);
            OwnedMemory source(RandomImage(random, width, height, bitCount, palette));
            OwnedMemory result(DitherImage(source.Get(), palette.data(), depth, 0));
            OwnedMemory expected(LiteralDither(source.Get(), palette.data(), depth, table));
            ASSERT_TRUE(SameBitmap(result.Get(), expected.Get()))
                << width << " x " << height << ", " << bitCount << " bits to depth " << depth;
        }
    }
}

TEST(DitherImage, EqualsThePlainFormOnLargeImages) {
    Random random(6);
    Palette palette = TestPalettes(random)[2];
    std::vector<uint8_t> table = LiteralInverseTable(palette.data());
    for (int width : {256, 333})
        for (int depth : {1, 4, 8}) {
            OwnedMemory source(RandomImage(random, width, 207, 24, palette));
            OwnedMemory result(DitherImage(source.Get(), palette.data(), depth, 0));
            OwnedMemory expected(LiteralDither(source.Get(), palette.data(), depth, table));
            EXPECT_TRUE(SameBitmap(result.Get(), expected.Get())) << width << " wide to depth " << depth;
        }
}

// Worked out by hand.
TEST(DitherImage, SpreadsErrorsUpwardsFromTheBottomRow) {
    Palette palette = {};
    palette[1] = {255, 255, 255};
    OwnedMemory source(GreyImage(4, 1, 100));
    // 100 -> 0, +43 = 143 -> 1, -49 = 51 -> 0, +22 = 122 -> 0 (its cell is 120)
    OwnedMemory result(DitherImage(source.Get(), palette.data(), 2, 0));
    EXPECT_EQ(Picture(result.Get()), "0100|");
    // The bottom row leaves 5/16 of its error above it: 120 -> 0 below, 120 + 37 = 157 -> 1 above.
    OwnedMemory column(GreyImage(1, 2, 120));
    OwnedMemory columnResult(DitherImage(column.Get(), palette.data(), 2, 0));
    EXPECT_EQ(Picture(columnResult.Get()), "1|0|");
}

// All pixels are black but one below and one above, up to the left of it.
TEST(DitherImage, SecondColumnGivesNothingToTheFirst) {
    Palette palette = {};
    palette[1] = {255, 255, 255};
    Palette colours = {};
    colours[1] = {120, 120, 120};
    colours[2] = {119, 119, 119};  // with 3/16 of 120 more it would be white
    auto aboveAfterErrorAt = [&](int errorColumn, int column) {
        OwnedMemory source(CreateImageBitmap(4, 2, colours.data(), 8));
        MemoryLock lock(source.Get());
        SetImagePixel(lock.As<BitmapHeader>(), errorColumn, 1, 1);
        SetImagePixel(lock.As<BitmapHeader>(), column, 0, 2);
        OwnedMemory result(DitherImage(source.Get(), palette.data(), 2, 0));
        return Picture(result.Get())[static_cast<size_t>(column)];
    };
    EXPECT_EQ(aboveAfterErrorAt(1, 0), '0');
    EXPECT_EQ(aboveAfterErrorAt(2, 1), '1');
}

TEST(DitherImage, TwoColourSourceHasNothingToDither) {
    OwnedMemory source(CreateImageBitmap(4, 4, nullptr, 1));
    for (int depth : {1, 4, 8}) EXPECT_EQ(DitherImage(source.Get(), Palette{}.data(), depth, 0), nullptr);
    EXPECT_EQ(abortStatus, 0);
}

TEST(DitherImage, AsksOncePerCellAndRowAndStopsAtAPress) {
    OwnedMemory source(CreateImageBitmap(5, 3, nullptr, 8));
    struct {
        unsigned flags;
        int depth;
        long pressAtPoll, polls;
        bool made;
    } cases[] = {
        {0, 8, 0, 0, true},
        {0, 1, 0, 0, true},
        {kMayBeAborted, 8, ScriptedInput::kNever, kTablePolls + 3, true},
        {kMayBeAborted, 8, 100, 101, false},
        {kMayBeAborted, 8, kTablePolls + 1, kTablePolls + 2, false},
        {kMayBeAborted, 1, ScriptedInput::kNever, 3, true},  // no table, but rows
        {kMayBeAborted, 1, 2, 3, false},
    };
    for (const auto& c : cases) {
        input = {};
        input.pressAtPoll = c.pressAtPoll;
        abortStatus = 77;
        OwnedMemory result(DitherImage(source.Get(), Palette{}.data(), c.depth, c.flags));
        EXPECT_EQ(result.Get() != nullptr, c.made);
        EXPECT_EQ(input.polls, c.polls);
        EXPECT_EQ(input.beeps, c.made ? 0 : 1);
        EXPECT_EQ(abortStatus, c.made ? 0 : kAbortedByUser);
    }
    input = {};
}

TEST(DitherImage, ExhaustedMemoryGivesNoResultAndLeaksNothing) {
    OwnedMemory source(CreateImageBitmap(9, 4, nullptr, 24));
    for (int depth : {1, 8}) {
        long allowed = 0;
        for (bool made = false; !made; ++allowed) {
            faults.allocationsUntilFailure = allowed;
            OwnedMemory result(DitherImage(source.Get(), Palette{}.data(), depth, 0));
            made = result.Get() != nullptr;
            ASSERT_LT(allowed, 10);
        }
        faults = {};
        EXPECT_GT(allowed, 1);
    }
}
