// Everything that makes one image from another, beside its plain form and some results worked out by hand.
#include <climits>

#include "imaging/dither.h"
#include "imaging/inverse_colour_table.h"
#include "imaging/remap.h"
#include "imaging/true_colour.h"
#include "tests/support/literal_colours.h"
#include "tests/support/random_images.h"
#include "tests/support/scripted_answers.h"
#include "tests/support/test_blocks.h"

namespace {

using Table = std::vector<uint8_t>;

struct Conversion {
    Result<MemoryHandle> (*convert)(const MemoryHandle& source, const RgbTriple* palette, int depth,
                                    StopQuestion* stop);
    MemoryHandle (*plain)(const MemoryHandle& source, const RgbTriple* palette, int depth, const Table& table);
};

constexpr Conversion kRemaps = {RemapImage, LiteralRemap};
constexpr Conversion kDithers = {DitherImage, LiteralDither};
constexpr Conversion kRemapTrueColours = {
    [](const MemoryHandle& source, const RgbTriple* palette, int depth, StopQuestion*) {
        return RemapTrueColours(source, palette, depth);
    },
    [](const MemoryHandle& source, const RgbTriple* palette, int depth, const Table& table) {
        return LiteralRemap(LiteralExpand(source), palette, depth, table);
    }};
constexpr Conversion kExpand = {
    [](const MemoryHandle& source, auto...) -> Result<MemoryHandle> { return ExpandToTrueColour(source); },
    [](const MemoryHandle& source, auto...) { return LiteralExpand(source); }};
constexpr Conversion kConversions[] = {kRemaps, kDithers, kRemapTrueColours, kExpand};

Bytes BytesOf(const MemoryHandle& image) {
    MemoryLock lock(image);
    return Bytes(lock.Bytes(), lock.Bytes() + MemorySize(image));
}

}  // namespace

// kQuirkColumnWithoutLeftShare and kQuirkShareBeforeNextRow among others, which the plain forms have too.
TEST(ColourConversions, EqualThePlainFormsAndKeepTheirSource) {
    constexpr int kBitCounts[] = {1, 4, 8, 24};
    Random random(2);
    for (const Colours& palette : TestPalettes(random)) {
        const Table table = LiteralInverseTable(palette.data());
        for (int i = 0; i < 160; ++i) {
            int bitCount = kBitCounts[i % 4], depth = 1 + i / 4 % 8;
            int width = i < 64 ? i / 12 : i > 155 ? 401 : static_cast<int>(random() % 70);
            MemoryHandle source = RandomImage(random, width, static_cast<int>(random() % 9), bitCount, palette);
            const Bytes before = BytesOf(source);
            for (const Conversion& conversion : kConversions) {
                Result<MemoryHandle> made = conversion.convert(source, palette.data(), depth, nullptr);
                MemoryHandle plain = conversion.plain(source, palette.data(), depth, table);
                ASSERT_TRUE(SameBitmap(*made, plain))
                    << "conversion " << &conversion - kConversions << ", image " << i << ", " << bitCount << " bits, "
                    << width << " wide, to depth " << depth;
            }
            ASSERT_EQ(BytesOf(source), before);
        }
    }
}

TEST(ColourConversions, WorkedOutByHand) {
    const Colours ignored = {{{200, 0, 0}, {0, 0, 0}}}, dark = {{{0, 0, 0}, {120, 200, 200}}};
    const Colours whiteFirst = {{{255, 255, 255}, {248, 248, 248}, {0, 0, 0}, {1, 1, 1}}};
    const Colours blackAndWhite = {{{0, 0, 0}, {255, 255, 255}}};
    Colours light = {};  // black from entry 16 on
    for (uint8_t i = 0; i < 16; ++i) light[i] = {static_cast<uint8_t>(100 + i), 200, 200};
    light[21] = {50, 0, 0};
    constexpr uint32_t k100 = 0x646464;
    const std::tuple<const char*, Conversion, int, Colours, std::vector<uint32_t>, Colours, int, std::vector<uint32_t>>
        cases[] = {
            // kQuirkOneBitIsBlackAndWhite
            {"two colours are black and white", kRemaps, 1, ignored, {0, 1, 1}, whiteFirst, 2, {2, 0, 0}},
            // kQuirkSearchedEntries
            {"unused entries lose high bits", kRemaps, 24, {}, {0, 0x33, 0x070707, 0xC8C86F}, light, 4, {0, 5, 0, 11}},
            {"own colours never meet unused ones", kRemaps, 8, dark, {0, 1}, light, 4, {0, 15}},
            {"a luminance of 129 is white", kRemaps, 24, {}, {0x818181, 0x828282}, {}, 1, {0, 1}},
            // Sums that fall just short: the levels of 27 and 54 are 31 and 63, which are not above the thresholds.
            {"levels of doubles", kDithers, 24, {}, {0x1C1C1C, 0x252525}, {}, 1, {0, 1}},
            {"levels of doubles", kDithers, 24, {}, {0x373737, 0x494949}, {}, 1, {0, 1}},
            // 100 -> 0, + 43 = 143 -> 1, - 49 = 51 -> 0, + 22 = 122 -> 0 (its cell is 120)
            {"errors go right", kDithers, 24, {}, {k100, k100, k100, k100}, blackAndWhite, 2, {0, 1, 0, 0}},
        };
    for (const auto& [what, conversion, bitCount, own, pixels, palette, depth, expected] : cases) {
        MemoryHandle source = MakeRow(bitCount, pixels, own.data());
        Result<MemoryHandle> result = conversion.convert(source, palette.data(), depth, nullptr);
        MemoryHandle worked = MakeRow(depth, expected, palette.data());
        EXPECT_TRUE(SameBitmap(*result, worked)) << what;
    }
}

TEST(ColourConversions, DitherToTwoColoursAsTheSettingsSay) {
    const Colours blackAndWhite = {{{0, 0, 0}, {255, 255, 255}}};
    auto dither = [&](const DitherSettings& values, const MemoryHandle& image) {
        ditherSettings = values;
        return *DitherImage(image, blackAndWhite.data(), 1);
    };
    // The luminances are 27 and 36; 31 is the threshold. The first pixel hands an error on. Beside: their levels.
    const std::pair<DitherSettings, std::vector<uint32_t>> cases[] = {
        {{20, 20}, {0, 1}},   // 31, 42
        {{4, 0}, {0, 1}},     // 31, 40
        {{5, 0}, {1, 1}},     // 32, 34
        {{60, 20}, {1, 1}},   // 72, 99
        {{0, 20}, {0, 0}},    // 11, 14
        {{20, 120}, {1, 1}},  // 254, 254: the most there is
        {{0, 100}, {0, 1}},   // 23, 32
    };
    MemoryHandle row = MakeRow(24, {0x1C1C1C, 0x252525});
    for (const auto& [values, expected] : cases) {
        MemoryHandle made = dither(values, row), worked = MakeRow(1, expected, blackAndWhite.data());
        EXPECT_TRUE(SameBitmap(made, worked)) << values.brightness << ", " << values.contrast;
    }
    const std::pair<DitherSettings, DitherSettings> ends[] = {
        {{-1, 20}, {0, 20}},    {{256, 100}, {255, 100}},   {{INT_MIN, INT_MIN}, {0, 0}},
        {{20, 128}, {20, 127}}, {{90, INT_MAX}, {90, 127}},
    };
    Random random(4);
    MemoryHandle image = RandomImage(random, 67, 41, 8, TestPalettes(random)[0]);
    for (const auto& [outside, end] : ends) {
        MemoryHandle made = dither(outside, image), wanted = dither(end, image);
        MemoryHandle plain = LiteralDither(image, blackAndWhite.data(), 1, {});
        EXPECT_TRUE(SameBitmap(made, wanted)) << outside.brightness << ", " << outside.contrast;
        EXPECT_TRUE(SameBitmap(wanted, plain)) << end.brightness << ", " << end.contrast;
    }
    ditherSettings = {};
}

TEST(ColourConversions, RefuseDepthsOfNoPalette) {
    MemoryHandle source = CreateImageBitmap(2, 2, nullptr, 8);
    for (const Conversion& conversion : {kRemaps, kDithers, kRemapTrueColours})
        for (int depth : {-1, 0, 9, 24})
            EXPECT_EQ(conversion.convert(source, Colours{}.data(), depth, nullptr).Why(), Failure::kNoMemory) << depth;
}

TEST(ColourConversions, AskOncePerCellAndRowAndStopWhenTold) {
    constexpr long kCells = kColourCells, kNever = ScriptedAnswers::kNever;
    const struct {
        Conversion conversion;
        int depth;
        long pressAtPoll, polls;
    } cases[] = {
        {kRemaps, 8, kNever, kCells + 3},
        {kRemaps, 8, kCells - 1, kCells},
        {kRemaps, 8, kCells + 2, kCells + 3},
        {kDithers, 8, kNever, kCells + 3},
        {kDithers, 8, kCells + 1, kCells + 2},
        {kDithers, 1, kNever, 3},  // no table, but rows
        {kDithers, 1, 1, 2},
    };
    MemoryHandle source = CreateImageBitmap(5, 3, nullptr, 24);
    for (const auto& c : cases) {
        ScriptedAnswers answers;
        answers.pressAtPoll = c.pressAtPoll;
        Result<MemoryHandle> result = c.conversion.convert(source, Colours{}.data(), c.depth, &answers);
        bool pressed = c.pressAtPoll != kNever;
        EXPECT_EQ(result.Why(), pressed ? Failure::kStopped : Failure::kNone) << &c - cases;
        EXPECT_EQ(static_cast<bool>(*result), !pressed) << &c - cases;
        EXPECT_EQ(answers.polls, c.polls) << &c - cases;
    }
}

TEST(InverseColourTable, EqualsAFullSearchForEveryCell) {
    Random random(1);
    for (int round = 0; round < 3; ++round)
        for (const Colours& palette : TestPalettes(random)) {
            InverseColourTable table;
            table.Fill(palette.data());
            EXPECT_EQ(Table(table.cells, table.cells + kColourCells), LiteralInverseTable(palette.data()));
        }
}
