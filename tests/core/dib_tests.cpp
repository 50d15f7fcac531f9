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

// The colours of the pixels, rows from the top: "r,g,b " each.
std::string ColoursIn(const MemoryHandle& image) {
    ImageLock bitmap(image);
    std::string all;
    for (int y = 0; y < bitmap->height; ++y)
        for (int x = 0; x < bitmap->width; ++x) {
            const uint32_t pixel = GetImagePixel(bitmap, x, y);
            RgbTriples colours = {};
            GetImagePalette(bitmap, colours);
            RgbTriple colour = {static_cast<uint8_t>(pixel), static_cast<uint8_t>(pixel >> 8),
                                static_cast<uint8_t>(pixel >> 16)};
            if (bitmap->bitCount <= 8) colour = colours[pixel];
            all += std::to_string(colour.red) + "," + std::to_string(colour.green) + "," + std::to_string(colour.blue) +
                   " ";
        }
    return all;
}

TEST(Dib, EveryFormGivesItsColours) {
    const std::vector<int> rgb565 = {0, 0xF8, 0, 0, 0xE0, 7, 0, 0, 0x1F, 0, 0, 0};
    struct Row {
        const char* name;
        Bytes bytes;
        int bitCount;
        const char* colours;
    };
    const Row rows[] = {
        {"1 bit", DibBytes(40, 2, 1, 1).Put({3, 2, 1, 0, 6, 5, 4, 0, 0x40, 0, 0, 0}), 4, "1,2,3 4,5,6 "},
        {"4 bits, two colours", DibBytes(40, 2, 1, 4, 0, 2).Put({3, 2, 1, 0, 6, 5, 4, 0, 0x12, 0, 0, 0}), 4,
         "4,5,6 0,0,0 "},
        {"8 bits, from the bottom", DibBytes(40, 1, 2, 8, 0, 2).Put({3, 2, 1, 0, 6, 5, 4, 0, 0, 9, 9, 9, 1, 9, 9, 9}),
         8, "4,5,6 1,2,3 "},
        {"8 bits, from the top", DibBytes(40, 1, -2, 8, 0, 2).Put({3, 2, 1, 0, 6, 5, 4, 0, 0, 9, 9, 9, 1, 9, 9, 9}), 8,
         "1,2,3 4,5,6 "},
        {"16 bits", DibBytes(40, 2, 1, 16).Put({0x1F, 0, 0xE0, 3}), 24, "0,0,255 0,255,0 "},
        {"16 bits, masks", DibBytes(40, 2, 1, 16, 3).Put(rgb565).Put({0xE0, 7, 0x1F, 0}), 24, "0,255,0 0,0,255 "},
        {"24 bits", DibBytes(40, 1, 1, 24).Put({3, 2, 1, 0}), 24, "1,2,3 "},
        {"24 bits, colours for poor screens", DibBytes(40, 1, 1, 24, 0, 1).Put({9, 9, 9, 9, 3, 2, 1, 0}), 24, "1,2,3 "},
        {"32 bits", DibBytes(40, 1, 1, 32).Put({3, 2, 1, 77}), 24, "1,2,3 "},
        {"32 bits, long header",
         DibBytes(124, 1, 1, 32, 3).Put({255, 0, 0, 0, 0, 255, 0, 0, 0, 0, 255, 0}).Zeros(72).Put({1, 2, 3, 77}), 24,
         "1,2,3 "},
        {"32 bits, no mask for blue",
         DibBytes(40, 1, 1, 32, 3).Put({255, 0, 0, 0, 0, 255, 0, 0, 0, 0, 0, 0}).Put({1, 2, 3, 4}), 24, "1,2,0 "},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        Result<MemoryHandle> image = ReadDib(row.bytes);
        ASSERT_TRUE(static_cast<bool>(image));
        EXPECT_EQ(GetImageInfo(*image)->bitCount, row.bitCount);
        EXPECT_EQ(ColoursIn(*image), row.colours);
        for (size_t kept = 0; kept < row.bytes.size(); ++kept)  // in memory of its own, where a read beyond it shows
            EXPECT_EQ(ReadDib(Bytes(row.bytes.begin(), row.bytes.begin() + static_cast<ptrdiff_t>(kept))).Why(),
                      Failure::kDamaged);
    }
}

TEST(Dib, WhatMakesNoSenseIsRefused) {
    const Bytes wrong[] = {
        DibBytes(12, 1, 1, 24).Zeros(64),
        DibBytes(39, 1, 1, 24).Zeros(64),
        DibBytes(0xFFFFFFFF, 1, 1, 24).Zeros(64),
        DibBytes(40, 0, 1, 24).Zeros(64),
        DibBytes(40, -1, 1, 24).Zeros(64),
        DibBytes(40, 65536, 1, 24).Zeros(64),
        DibBytes(40, 1, 0, 24).Zeros(64),
        DibBytes(40, 1, INT32_MIN, 24).Zeros(64),
        DibBytes(40, 65535, 65535, 32).Zeros(64),
        DibBytes(40, 1, 1, 0).Zeros(64),
        DibBytes(40, 1, 1, 2).Zeros(64),
        DibBytes(40, 1, 1, 8, 1).Zeros(2000),
        DibBytes(40, 1, 1, 24, 3).Zeros(64),
        DibBytes(40, 1, 1, 32, 4).Zeros(64),
        DibBytes(40, 1, 1, 24, 0, 0xFFFFFFFF).Zeros(64),
    };
    for (const Bytes& bytes : wrong) EXPECT_EQ(ReadDib(bytes).Why(), Failure::kDamaged) << &bytes - wrong;
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
        Result<MemoryHandle> back = ReadDib({dib.Bytes(), bytes});
        ASSERT_TRUE(static_cast<bool>(back));
        EXPECT_EQ(ColoursIn(*back), "0,2,3 5,2,3 0,2,3 0,2,3 0,2,3 15,2,3 ");
        EXPECT_EQ(ColoursIn(image).substr(0, 6), "0,0,0 ") << "the image keeps its own";
    }
}

}  // namespace
