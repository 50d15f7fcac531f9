// Pictures in the form of the clipboard.
#include "imaging/dib.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tests/support/gif_bytes.h"

namespace {

struct DibBytes : Bytes {
    DibBytes(uint32_t headerBytes, int32_t width, int32_t height, int bitCount, uint32_t compression = 0,
             uint32_t coloursUsed = 0) {
        BitmapHeader header = {};
        header.size = headerBytes;
        header.width = width;
        header.height = height;
        header.planes = 1;
        header.bitCount = static_cast<uint16_t>(bitCount);
        header.compression = compression;
        header.coloursUsed = coloursUsed;
        resize(sizeof header);
        memcpy(data(), &header, sizeof header);
    }
    DibBytes& Put(const std::vector<int>& more) {
        for (int byte : more) push_back(static_cast<uint8_t>(byte));
        return *this;
    }
    DibBytes& Zeros(size_t count) {
        resize(size() + count);
        return *this;
    }
};

// The colours of the pixels, rows from the top: "r,g,b " each, with "/opacity" where it is not 255.
std::string ColoursIn(const Picture& picture) {
    std::string all;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) {
            const uint8_t* pixel = picture.Row(y) + static_cast<size_t>(x) * picture.PixelBytes();
            Rgba colour = picture.IsIndexed() ? picture.colours[*pixel] : Rgba();
            if (!picture.IsIndexed()) memcpy(&colour, pixel, sizeof colour);
            all += std::to_string(colour.red) + "," + std::to_string(colour.green) + "," + std::to_string(colour.blue);
            all += (colour.opacity == 255 ? "" : "/" + std::to_string(colour.opacity)) + " ";
        }
    return all;
}

// In memory of its own, where a read beyond it shows.
Result<Picture> ReadBeginning(const Bytes& bytes, size_t kept) {
    return ReadDib(Bytes(bytes.begin(), bytes.begin() + static_cast<ptrdiff_t>(kept)));
}

TEST(Dib, EveryFormGivesItsColours) {
    const std::vector<int> rgb565 = {0, 0xF8, 0, 0, 0xE0, 7, 0, 0, 0x1F, 0, 0, 0};
    const std::vector<int> bgr = {255, 0, 0, 0, 0, 255, 0, 0, 0, 0, 255, 0};
    const std::vector<int> rgb = {0, 0, 255, 0, 0, 255, 0, 0, 255, 0, 0, 0}, opacity = {0, 0, 0, 255};
    struct Case {
        const char* name;
        Bytes bytes;
        int colourCount;
        const char* colours;
        int padding = 0;  // bytes at the end that may be missing
    };
    const Case cases[] = {
        {"1 bit", DibBytes(40, 2, 1, 1).Put({3, 2, 1, 0, 6, 5, 4, 0, 0x40, 0, 0, 0}), 2, "1,2,3 4,5,6 ", 3},
        {"4 bits, two colours", DibBytes(40, 2, 1, 4, 0, 2).Put({3, 2, 1, 0, 6, 5, 4, 0, 0x12, 0, 0, 0}), 2,
         "4,5,6 0,0,0 ", 3},
        {"8 bits, from the bottom", DibBytes(40, 1, 2, 8, 0, 2).Put({3, 2, 1, 0, 6, 5, 4, 0, 0, 9, 9, 9, 1, 9, 9, 9}),
         2, "4,5,6 1,2,3 ", 3},
        {"8 bits, from the top", DibBytes(40, 1, -2, 8, 0, 2).Put({3, 2, 1, 0, 6, 5, 4, 0, 0, 9, 9, 9, 1, 9, 9, 9}), 2,
         "1,2,3 4,5,6 ", 3},
        {"8 bits, runs", DibBytes(40, 2, 1, 8, 1, 2).Put({3, 2, 1, 0, 6, 5, 4, 0, 2, 1, 0, 1}), 2, "4,5,6 4,5,6 "},
        {"16 bits", DibBytes(40, 2, 1, 16).Put({0x1F, 0, 0xE0, 3}), 0, "0,0,255 0,255,0 "},
        {"16 bits, masks", DibBytes(40, 2, 1, 16, 3).Put(rgb565).Put({0xE0, 7, 0x1F, 0}), 0, "0,255,0 0,0,255 "},
        {"24 bits", DibBytes(40, 1, 1, 24).Put({3, 2, 1, 0}), 0, "1,2,3 ", 1},
        {"24 bits, colours for poor screens", DibBytes(40, 1, 1, 24, 0, 1).Put({9, 9, 9, 9, 3, 2, 1, 0}), 0, "1,2,3 ",
         1},
        {"32 bits, whatever was there", DibBytes(40, 2, 1, 32).Put({3, 2, 1, 77, 3, 2, 1, 0}), 0, "1,2,3 1,2,3 "},
        {"32 bits, opacity unsaid", DibBytes(40, 3, 1, 32).Put({3, 2, 1, 255, 0, 0, 0, 0, 6, 5, 4, 99}), 0,
         "1,2,3 0,0,0/0 4,5,6/99 "},
        {"32 bits, usual masks, opacity unsaid", DibBytes(40, 2, 1, 32, 3).Put(rgb).Put({3, 2, 1, 255, 0, 0, 0, 0}), 0,
         "1,2,3 0,0,0/0 "},
        {"32 bits, long header", DibBytes(124, 1, 1, 32, 3).Put(bgr).Zeros(72).Put({1, 2, 3, 77}), 0, "1,2,3 "},
        {"32 bits, long header, opacity",
         DibBytes(124, 2, 1, 32, 3).Put(rgb).Put(opacity).Zeros(68).Put({3, 2, 1, 77, 3, 2, 1, 0}), 0,
         "1,2,3/77 1,2,3/0 "},
        {"32 bits, long header, nobody thought of opacity",
         DibBytes(124, 2, 1, 32, 3).Put(rgb).Put(opacity).Zeros(68).Put({3, 2, 1, 0, 6, 5, 4, 0}), 0, "1,2,3 4,5,6 "},
        {"32 bits, four masks behind", DibBytes(40, 2, 1, 32, 6).Put(rgb).Put(opacity).Put({3, 2, 1, 0, 3, 2, 1, 9}), 0,
         "1,2,3/0 1,2,3/9 "},
        {"32 bits, no mask for blue",
         DibBytes(40, 1, 1, 32, 3).Put({255, 0, 0, 0, 0, 255, 0, 0, 0, 0, 0, 0}).Put({1, 2, 3, 4}), 0, "1,2,0 "},
        {"32 bits, masks over each other",
         DibBytes(40, 1, 1, 32, 3).Put({255, 255, 255, 255, 255, 0, 0, 255, 1, 0, 0, 128}).Put({1, 0, 0, 128}), 0,
         "128,128,255 "},
    };
    for (const Case& dib : cases) {
        SCOPED_TRACE(dib.name);
        Result<Picture> picture = ReadDib(dib.bytes);
        ASSERT_TRUE(static_cast<bool>(picture));
        EXPECT_EQ(picture->colourCount, dib.colourCount);
        EXPECT_EQ(ColoursIn(*picture), dib.colours);
        for (size_t kept = 0; kept + static_cast<size_t>(dib.padding) < dib.bytes.size(); ++kept)
            EXPECT_EQ(ReadBeginning(dib.bytes, kept).Why(), Failure::kDamaged) << kept;
    }
}

TEST(Dib, WhatMakesNoSenseIsRefused) {
    const std::pair<Bytes, Failure> wrong[] = {
        {DibBytes(0, 1, 1, 24).Zeros(64), Failure::kNotSupported},
        {DibBytes(13, 1, 1, 24).Zeros(64), Failure::kNotSupported},
        {DibBytes(0xFFFFFFFF, 1, 1, 24).Zeros(64), Failure::kNotSupported},
        {DibBytes(12, 1, 0, 24).Zeros(64), Failure::kNotSupported},
        {DibBytes(124, 1, 1, 24).Zeros(64), Failure::kDamaged},
        {DibBytes(40, 0, 1, 24).Zeros(64), Failure::kDamaged},
        {DibBytes(40, 1, 0, 24).Zeros(64), Failure::kDamaged},
        {DibBytes(40, -1, 1, 24).Zeros(64), Failure::kTooLarge},
        {DibBytes(40, 65536, 1, 24).Zeros(64), Failure::kTooLarge},
        {DibBytes(40, 1, INT32_MIN, 24).Zeros(64), Failure::kTooLarge},
        {DibBytes(40, 65535, 65535, 32).Zeros(64), Failure::kTooLarge},
        {DibBytes(40, 16384, 16384, 32).Zeros(64), Failure::kDamaged},
        {DibBytes(40, 1, 1, 0).Zeros(64), Failure::kNotSupported},
        {DibBytes(40, 1, 1, 2).Zeros(64), Failure::kNotSupported},
        {DibBytes(40, 1, 1, 8, 2).Zeros(2000), Failure::kNotSupported},
        {DibBytes(40, 1, 1, 24, 3).Zeros(64), Failure::kNotSupported},
        {DibBytes(40, 1, 1, 32, 4).Zeros(64), Failure::kNotSupported},
        {DibBytes(40, 1, 1, 24, 0, 0xFFFFFFFF).Zeros(64), Failure::kDamaged},
        {DibBytes(40, 1, 1, 8, 0, 0x40000000).Zeros(64), Failure::kDamaged},
    };
    for (const auto& [bytes, failure] : wrong) EXPECT_EQ(ReadDib(bytes).Why(), failure) << &bytes - &wrong[0].first;
}

TEST(Dib, WhatIsTransparentComesBack) {
    for (int depth : {1, 4, 8}) {
        const RgbTriples colours = {{9, 8, 7}, {1, 2, 3}};
        MemoryHandle image = CreateImageBitmap(3, 2, nullptr, depth);
        {
            ImageWriteLock bitmap(&image);
            SetImagePixel(bitmap, 1, 0, 1);
            SetImagePixel(bitmap, 2, 1, 1);
        }
        size_t bytes = 0;
        const MemoryLock dib(MakeDibWithOpacity(image, colours, 1, &bytes));
        ASSERT_EQ(bytes, 124u + 3 * 2 * 4);
        Result<Picture> back = ReadDib({dib.Bytes(), bytes});
        ASSERT_TRUE(static_cast<bool>(back));
        EXPECT_EQ(ColoursIn(*back), "9,8,7 0,0,0/0 9,8,7 9,8,7 9,8,7 0,0,0/0 ");
    }
    const RgbTriples black = {};
    size_t bytes = 0;
    EXPECT_FALSE(MakeDibWithOpacity(CreateImageBitmap(1, 1, nullptr, 24), black, 1, &bytes)) << "it has no indexes";
    EXPECT_FALSE(MakeDibWithOpacity(CreateImageBitmap(65535, 4097, nullptr, 1), black, 1, &bytes)) << "too large";
}

TEST(Dib, AnImageComesBackInTheColoursGiven) {
    for (int depth : {4, 8}) {
        RgbTriples colours = {};
        for (int i = 0; i < 16; ++i) colours[i] = {static_cast<uint8_t>(i), 2, 3};
        MemoryHandle image = CreateImageBitmap(3, 2, nullptr, depth);
        {
            ImageWriteLock bitmap(&image);
            SetImagePixel(bitmap, 1, 0, 5);
            SetImagePixel(bitmap, 2, 1, 15);
        }
        size_t bytes = 0;
        MemoryLock dib(MakeDib(image, colours, &bytes));
        EXPECT_EQ(bytes, depth == 4 ? 40u + 64 + 8 : 40u + 1024 + 8);
        Result<Picture> back = ReadDib({dib.Bytes(), bytes});
        ASSERT_TRUE(static_cast<bool>(back));
        EXPECT_EQ(ColoursIn(*back), "0,2,3 5,2,3 0,2,3 0,2,3 0,2,3 15,2,3 ");
        ImageLock bitmap(image);
        EXPECT_EQ(ImageColourTable(bitmap)[0].green, 0) << "the image keeps its own";
    }
}

}  // namespace
