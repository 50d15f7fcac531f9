#include "imaging/remap.h"

#include <gtest/gtest.h>

#include "imaging/inverse_colour_table.h"
#include "imaging/nearest_colour.h"
#include "imaging/true_colour.h"
#include "platform/faults.h"
#include "tests/support/literal_colours.h"
#include "tests/support/random_images.h"
#include "tests/support/scripted_input.h"

namespace {

constexpr long kTablePolls = 32768;

// A bitmap of one row with these pixels.
MemoryHandle RowOf(const std::vector<uint32_t>& pixels, const RgbTriple* colours, int depth) {
    MemoryHandle image = CreateImageBitmap(static_cast<int>(pixels.size()), 1, colours, depth);
    MemoryLock lock(image);
    for (size_t x = 0; x < pixels.size(); ++x)
        SetImagePixel(lock.As<BitmapHeader>(), static_cast<int>(x), 0, pixels[x]);
    return image;
}

std::vector<uint32_t> PixelsOf(MemoryHandle image) {
    MemoryLock lock(image);
    auto* bitmap = lock.As<const BitmapHeader>();
    std::vector<uint32_t> pixels;
    for (int x = 0; bitmap && x < bitmap->width; ++x) pixels.push_back(GetImagePixel(bitmap, x, 0));
    return pixels;
}

std::vector<uint32_t> Remapped(MemoryHandle source, const Palette& palette, int depth) {
    OwnedMemory owned(source), result(RemapImage(source, palette.data(), depth, 0));
    return PixelsOf(result.Get());
}

}  // namespace

TEST(NearestColour, FirstOfEquallyFarEntriesWins) {
    const RgbTriple palette[] = {{10, 0, 0}, {0, 10, 0}, {0, 0, 10}, {0, 0, 4}};
    EXPECT_EQ(NearestColour(0, 0, 0, palette, 3), 0);
    EXPECT_EQ(NearestColour(0, 0, 0, palette, 4), 3);
    EXPECT_EQ(NearestColour(0, 5, 5, palette, 3), 1);
    EXPECT_EQ(NearestColour(255, 255, 255, palette, 0), 0);
    EXPECT_EQ(NearestColour(255, 255, 255, palette, -1), 0);
    EXPECT_EQ(ExactColour(0, 0, 4, palette, 1), -1);
    EXPECT_EQ(ExactColour(0, 0, 4, palette, 2), 3);
}

TEST(InverseColourTable, EqualsAFullSearchForEveryCell) {
    Random random(1);
    for (int round = 0; round < 3; ++round) {
        std::vector<Palette> palettes = TestPalettes(random);
        for (size_t i = round ? 10 : 0; i < palettes.size(); ++i) {
            InverseColourTable table;
            table.Fill(palettes[i].data());
            std::vector<uint8_t> expected = LiteralInverseTable(palettes[i].data());
            EXPECT_EQ(std::vector<uint8_t>(table.cells, table.cells + kColourCells), expected) << "palette " << i;
        }
    }
}

TEST(RemapImage, EqualsThePlainFormAndKeepsItsSource) {
    Random random(2);
    for (const Palette& palette : TestPalettes(random)) {
        std::vector<uint8_t> table = LiteralInverseTable(palette.data());
        for (int i = 0; i < 200; ++i) {
            const int bitCounts[] = {1, 4, 8, 24};
            int bitCount = bitCounts[i % 4], depth = 1 + i / 4 % 8;
            int width = i < 64 ? i / 16 : static_cast<int>(random() % 40), height = static_cast<int>(random() % 9);
            auto seed = static_cast<unsigned>(random());
            Random first(seed), second(seed);
            OwnedMemory source(RandomImage(first, width, height, bitCount, palette));
            OwnedMemory untouched(RandomImage(second, width, height, bitCount, palette));
            OwnedMemory result(RemapImage(source.Get(), palette.data(), depth, 0));
            OwnedMemory expected(LiteralRemap(source.Get(), palette.data(), depth, table));
            ASSERT_TRUE(SameBitmap(result.Get(), expected.Get()))
                << width << " x " << height << ", " << bitCount << " bits to depth " << depth;
            ASSERT_TRUE(SameBitmap(source.Get(), untouched.Get()));
        }
    }
}

TEST(RemapTrueColours, EqualsThePlainFormOfTheExpandedImage) {
    Random random(12);
    for (const Palette& palette : TestPalettes(random)) {
        std::vector<uint8_t> table = LiteralInverseTable(palette.data());
        for (int i = 0; i < 64; ++i) {
            const int bitCounts[] = {1, 4, 8, 24};
            int bitCount = bitCounts[i % 4], depth = 1 + i / 4 % 8;
            OwnedMemory source(RandomImage(random, 1 + i / 4, 7, bitCount, palette));
            OwnedMemory result(RemapTrueColours(source.Get(), palette.data(), depth));
            OwnedMemory expanded(LiteralExpand(source.Get()));
            OwnedMemory expected(LiteralRemap(expanded.Get(), palette.data(), depth, table));
            ASSERT_TRUE(SameBitmap(result.Get(), expected.Get())) << bitCount << " bits to depth " << depth;
        }
    }
    EXPECT_EQ(RemapTrueColours(nullptr, Palette{}.data(), 8), nullptr);
}

TEST(RemapImage, EqualsThePlainFormOnLargeImages) {
    Random random(3);
    Palette palette = TestPalettes(random)[6];
    std::vector<uint8_t> table = LiteralInverseTable(palette.data());
    for (int bitCount : {1, 4, 8, 24})
        for (int depth : {1, 4, 8}) {
            OwnedMemory source(RandomImage(random, 401, 207, bitCount, palette));
            OwnedMemory result(RemapImage(source.Get(), palette.data(), depth, 0));
            OwnedMemory expected(LiteralRemap(source.Get(), palette.data(), depth, table));
            EXPECT_TRUE(SameBitmap(result.Get(), expected.Get())) << bitCount << " bits to depth " << depth;
        }
}

TEST(RemapImage, TwoColourSourceBecomesPureBlackAndWhite) {
    const RgbTriple odd[] = {{200, 0, 0}, {0, 0, 0}};  // ignored
    Palette palette = {};
    palette[0] = {9, 9, 9};
    palette[2] = {255, 255, 255};
    palette[3] = {1, 1, 1};
    // Black is exactly entry 1; white exactly entry 2.
    EXPECT_EQ(Remapped(RowOf({0, 1, 1}, odd, 1), palette, 2), (std::vector<uint32_t>{1, 2, 2}));
    EXPECT_EQ(Remapped(RowOf({0, 1, 1}, odd, 1), palette, 1), (std::vector<uint32_t>{0, 1, 1}));
}

TEST(RemapImage, UnusedEntriesAreFoundAndLoseTheirHighBits) {
    Palette palette = {};  // black from entry 16 on
    for (size_t i = 0; i < 16; ++i) palette[i] = {static_cast<uint8_t>(100 + i), 200, 200};
    EXPECT_EQ(Remapped(RowOf({0x000000, 0x070707, 0xC8C86F}, nullptr, 24), palette, 4),
              (std::vector<uint32_t>{0, 0, 11}));
    palette[21] = {50, 0, 0};
    EXPECT_EQ(Remapped(RowOf({0x000033}, nullptr, 24), palette, 4), (std::vector<uint32_t>{5}));
    // A source with a colour table is only compared with the colours in use.
    const Palette dark = {{{0, 0, 0}, {120, 200, 200}}};
    EXPECT_EQ(Remapped(RowOf({0, 1}, dark.data(), 8), palette, 4), (std::vector<uint32_t>{0, 15}));
}

TEST(RemapImage, LuminanceOf129IsWhite) {
    EXPECT_EQ(Remapped(RowOf({0x818181, 0x828282}, nullptr, 24), Palette{}, 1),
              (std::vector<uint32_t>{0, 1}));  // luminances 128 and 129
}

TEST(RemapImage, RefusesDepthsThatArePalettesOfNone) {
    OwnedMemory source(CreateImageBitmap(2, 2, nullptr, 8));
    for (int depth : {-1, 0, 9, 24}) EXPECT_EQ(RemapImage(source.Get(), Palette{}.data(), depth, 0), nullptr);
    EXPECT_EQ(RemapImage(nullptr, Palette{}.data(), 8, 0), nullptr);
}

TEST(RemapImage, AsksOncePerCellAndRowAndStopsAtAPress) {
    OwnedMemory source(CreateImageBitmap(5, 3, nullptr, 24));
    struct {
        unsigned flags;
        long pressAtPoll, polls;
        bool made;
    } cases[] = {
        {0, 0, 0, true},
        {1, 0, 0, true},
        {kMayBeAborted, ScriptedInput::kNever, kTablePolls + 3, true},
        {kMayBeAborted, 0, 1, false},
        {kMayBeAborted, kTablePolls - 1, kTablePolls, false},
        {kMayBeAborted, kTablePolls + 2, kTablePolls + 3, false},
        {kMayBeAborted, kTablePolls + 3, kTablePolls + 3, true},
    };
    for (const auto& c : cases) {
        input = {};
        input.pressAtPoll = c.pressAtPoll;
        abortStatus = 77;
        OwnedMemory result(RemapImage(source.Get(), Palette{}.data(), 8, c.flags));
        EXPECT_EQ(result.Get() != nullptr, c.made);
        EXPECT_EQ(input.polls, c.polls);
        EXPECT_EQ(input.beeps, c.made ? 0 : 1);
        EXPECT_EQ(abortStatus, c.made ? 0 : kAbortedByUser);
    }
    input = {};
}

TEST(RemapImage, ExhaustedMemoryGivesNoResultAndLeaksNothing) {
    OwnedMemory source(CreateImageBitmap(9, 4, nullptr, 24));
    long allowed = 0;
    for (bool made = false; !made; ++allowed) {
        faults.allocationsUntilFailure = allowed;
        OwnedMemory result(RemapImage(source.Get(), Palette{}.data(), 8, 0));
        made = result.Get() != nullptr;
        EXPECT_EQ(abortStatus, 0);
        ASSERT_LT(allowed, 10);
    }
    faults = {};
    EXPECT_GT(allowed, 1);
}

TEST(ExpandToTrueColour, EqualsThePlainForm) {
    Random random(4);
    Palette palette = TestPalettes(random)[2];
    for (int i = 0; i < 400; ++i) {
        const int bitCounts[] = {1, 4, 8, 24};
        OwnedMemory source(RandomImage(random, i % 21, i % 5, bitCounts[i % 4], palette));
        OwnedMemory result(ExpandToTrueColour(source.Get())), expected(LiteralExpand(source.Get()));
        ASSERT_TRUE(SameBitmap(result.Get(), expected.Get())) << i;
    }
    EXPECT_EQ(ExpandToTrueColour(nullptr), nullptr);
}
