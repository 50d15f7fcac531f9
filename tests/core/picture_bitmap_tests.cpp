// What pictures become as image bitmaps, and transparent pixels among them.
#include "imaging/picture_bitmap.h"

#include <algorithm>

#include "platform/faults.h"
#include "tests/support/random_images.h"
#include "tests/support/test_blocks.h"

namespace {

using RgbaPixels = std::vector<Rgba>;

constexpr Rgba kRedPixel = {255, 0, 0, 255}, kBlue = {0, 0, 255, 255}, kBlackPixel = {0, 0, 0, 255},
               kClear = {9, 9, 9, 127}, kHalf = {7, 7, 7, 128};

RgbaPixels ManyColours(size_t count) {
    RgbaPixels pixels;
    for (size_t i = 0; i < count; ++i)
        pixels.push_back({static_cast<uint8_t>(i), static_cast<uint8_t>(i / 256), 1, 255});
    return pixels;
}

RgbaPixels With(RgbaPixels pixels, Rgba more) {
    pixels.push_back(more);
    return pixels;
}

// A picture of one row.
Result<PictureBitmap> Make(const RgbaPixels& pixels) {
    return MakePictureBitmap({static_cast<int>(pixels.size()), 1, reinterpret_cast<const uint8_t*>(pixels.data()), {}});
}
Result<PictureBitmap> Make(const Bytes& indexes, const RgbaPixels& colours) {
    return MakePictureBitmap({static_cast<int>(indexes.size()), 1, indexes.data(), colours});
}

std::string PixelsOf(const MemoryHandle& bitmap) {
    Block block;
    block.data = bitmap;
    return PixelsOf(block);
}

std::vector<RgbTriple> ColoursOf(const MemoryHandle& bitmap, size_t count) {
    RgbTriples colours = {};
    ImageLock lock(bitmap);
    GetImagePalette(lock, colours);
    return {colours, colours + count};
}

}  // namespace

TEST(PictureBitmap, ColoursAreNumberedWhileThereAreFew) {
    const std::tuple<const char*, RgbaPixels, int, int, int> cases[] = {
        // What, its pixels, bits a pixel, depth, transparent index.
        {"one colour", {kRedPixel}, 4, 2, -1},
        {"two, which are not black and white", {kRedPixel, kBlue, kRedPixel}, 4, 2, -1},
        {"two and transparent", {kRedPixel, kClear, kBlue}, 4, 2, 2},
        {"just opaque", {kHalf, kRedPixel}, 4, 2, -1},
        {"all transparent", {kClear, kClear}, 4, 2, 0},
        {"256", ManyColours(256), 8, 8, -1},
        {"257", ManyColours(257), 24, 24, -1},
        {"255 and transparent", With(ManyColours(255), kClear), 8, 8, 255},
        {"256 and transparent", With(ManyColours(256), kClear), 24, 24, -1},
    };
    for (const auto& [what, pixels, bits, depth, transparent] : cases) {
        SCOPED_TRACE(what);
        const Result<PictureBitmap> made = Make(pixels);
        ASSERT_TRUE(static_cast<bool>(made));
        EXPECT_EQ(GetImageInfo(made->bitmap)->bitCount, bits);
        EXPECT_EQ(made->depth, depth);
        EXPECT_EQ(made->transparentIndex, transparent);
        const bool isTransparent =
            std::ranges::any_of(pixels, [](Rgba pixel) { return pixel.opacity < kLeastOpacity; });
        EXPECT_EQ(static_cast<bool>(made->mask), isTransparent);
        ImageLock bitmap(made->bitmap), mask(made->mask);
        RgbTriples colours = {};
        GetImagePalette(bitmap, colours);
        for (int x = 0; x < bitmap->width; ++x) {
            const Rgba wanted = pixels[static_cast<size_t>(x)];
            if (isTransparent) {
                EXPECT_EQ(GetImagePixel(mask, x, 0), wanted.opacity < kLeastOpacity ? 0u : 1u) << x;
            }
            if (wanted.opacity < kLeastOpacity) continue;
            const uint32_t pixel = GetImagePixel(bitmap, x, 0);
            const RgbTriple shown = bits == 24
                                        ? RgbTriple{static_cast<uint8_t>(pixel), static_cast<uint8_t>(pixel >> 8),
                                                    static_cast<uint8_t>(pixel >> 16)}
                                        : colours[pixel];
            EXPECT_EQ(shown, (RgbTriple{wanted.red, wanted.green, wanted.blue})) << x;
        }
    }
}

TEST(PictureBitmap, NumbersOfColoursStay) {
    const RgbaPixels four = {kBlackPixel, kRedPixel, kBlue, {1, 2, 3, 255}};
    const RgbaPixels clears = {kClear, kRedPixel, {5, 5, 5, 0}, kBlue};
    const std::tuple<const char*, Bytes, RgbaPixels, const char*, int, int> cases[] = {
        {"two colours", {0, 1, 0}, {kRedPixel, kBlue}, "010", 1, -1},
        {"one colour", {0, 0}, {kRedPixel}, "00", 1, -1},
        {"unused ones count", {1, 1}, four, "11", 2, -1},
        {"more than there are", {5, 0}, four, "50", 3, -1},
        {"transparent ones share the first", {3, 2, 0, 1}, clears, "3001", 2, 0},
        {"the first that is used", {3, 2, 1}, clears, "321", 2, 2},
        {"none that is used", {3, 1}, clears, "31", 2, -1},
        {"two, one of them transparent", {0, 1}, {kClear, kRedPixel}, "01", 2, 0},
    };
    for (const auto& [what, indexes, colours, pixels, depth, transparent] : cases) {
        SCOPED_TRACE(what);
        const Result<PictureBitmap> made = Make(indexes, colours);
        EXPECT_EQ(PixelsOf(made->bitmap), pixels);
        EXPECT_EQ(made->depth, depth);
        EXPECT_EQ(made->transparentIndex, transparent);
        EXPECT_EQ(static_cast<bool>(made->mask), transparent >= 0);
    }
    const RgbTriple red = {255, 0, 0}, clear = {9, 9, 9}, blue = {0, 0, 255};
    EXPECT_EQ(ColoursOf(Make({3, 2, 1}, clears)->bitmap, 4), (std::vector{clear, red, red, blue}))
        << "nobody sees the transparent one: no palette needs it";
}

TEST(PictureBitmap, TransparentPixelsGetAnIndexOfTheirOwn) {
    const Colours colours = {{{0, 0, 0}, {9, 9, 9}, {200, 0, 0}, {0, 200, 0}}};
    const std::tuple<const char*, std::vector<uint32_t>, std::vector<uint32_t>, int, const char*, int> cases[] = {
        // What, the pixels, which of them are opaque, the wanted index, the pixels then, the index.
        {"the last that is free", {0, 1, 0}, {1, 1, 0}, -1, "013", 3},
        {"the wanted one", {0, 1, 0}, {1, 1, 0}, 2, "012", 2},
        {"the wanted one is not free", {0, 2, 0}, {1, 1, 0}, 2, "023", 3},
        {"what only transparent pixels have is free", {0, 1, 2, 3}, {1, 1, 1, 0}, -1, "0123", 3},
        {"the rarest gives way to the nearest", {0, 1, 2, 3, 0, 2, 3, 2}, {1, 1, 1, 1, 1, 1, 1, 0}, -1, "00230231", 1},
    };
    for (const auto& [what, pixels, isOpaque, wanted, expected, index] : cases) {
        SCOPED_TRACE(what);
        MemoryHandle bitmap = MakeRow(4, pixels, colours.data());
        EXPECT_EQ(SetTransparentPixels(&bitmap, MakeRow(1, isOpaque), 2, wanted), index);
        EXPECT_EQ(PixelsOf(bitmap), expected);
    }
}

TEST(PictureBitmap, EveryLackOfMemoryIsTold) {
    const RgbaPixels clears = {kClear, kRedPixel};
    auto make = [&](int way) {
        if (way == 2) return Make({0, 1}, clears);
        return Make(way ? With(ManyColours(300), kClear) : With(ManyColours(3), kClear));
    };
    for (int way = 0; way < 3; ++way) {
        long n = 0;
        for (bool failed = true; failed; ++n) {
            faults.onlyOne = true;
            faults.allocationsUntilFailure = n;
            const Failure why = make(way).Why();
            failed = faults.allocationsUntilFailure == Faults::kPast;
            faults = {};
            EXPECT_EQ(why, failed ? Failure::kNoMemory : Failure::kNone) << way << " " << n;
        }
        EXPECT_GT(n, 3);
    }
}
