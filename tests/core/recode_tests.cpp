#include "size/recode.h"

#include <algorithm>
#include <numeric>
#include <random>

#include "gif/lzw_encoder.h"
#include "tests/support/literal_codec.h"
#include "tests/support/test_blocks.h"

TEST(Recode, KeepsStringsInOtherNumbers) {
    std::mt19937 random(4);
    for (int round = 0; round < 60; ++round) {
        const int from = 2 + round % 7, to = 2 + round / 7 % 7, used = 1 << std::min(from, to);
        const int width = 1 + static_cast<int>(random() % 300), height = round % 4 ? 40 : 1;
        Block image = MakeImage(width, height, from);
        IndexMap map = {};
        std::iota(map.begin(), map.begin() + used, uint8_t{0});
        std::shuffle(map.begin(), map.begin() + used, random);
        const int few = 1 + static_cast<int>(random() % static_cast<unsigned>(used));
        {
            ImageWriteLock bitmap(&image.data);
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x)
                    SetImagePixel(bitmap, x, y, static_cast<uint32_t>(random() % static_cast<unsigned>(few)));
        }
        File file;
        ASSERT_TRUE(file.CreateMemory());
        ASSERT_TRUE(EncodeImageData(file, image, Manner::kWhole));
        const uint64_t pixels = static_cast<uint64_t>(width) * static_cast<uint64_t>(height);
        EncodedPixels codes;
        const bool hasRoom = RecodeStrings(file.Written(), pixels, map, to, &codes);
        ASSERT_TRUE(hasRoom || to > from) << round;
        if (!hasRoom) continue;
        ASSERT_EQ(codes.data[0], to);
        Block back = MakeImage(width, height, std::max(from, to));
        ASSERT_EQ(DecodeLiterally(Bytes(codes.data.begin() + 1, codes.data.end()), to, &back), kDecodeDone) << round;
        ImageLock before(image.data), after(back.data);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                ASSERT_EQ(GetImagePixel(after, x, y), map[GetImagePixel(before, x, y)]) << round;
    }
}

TEST(Recode, TakesNoDamagedData) {
    const IndexMap map = {};
    EncodedPixels codes;
    EXPECT_TRUE(RecodeStrings(Bytes{2, 2, 0x44, 0x0A, 0}, 2, map, 2, &codes));
    EXPECT_FALSE(RecodeStrings(Bytes{2, 2, 0x44, 0x0A, 0}, 3, map, 2, &codes)) << "fewer pixels";
    EXPECT_FALSE(RecodeStrings(Bytes{2, 1, 0x44, 0}, 3, map, 2, &codes)) << "no end";
    EXPECT_FALSE(RecodeStrings(Bytes{2, 9, 0x44, 0x0A, 0}, 3, map, 2, &codes)) << "a sub-block cut off";
    EXPECT_FALSE(RecodeStrings(Bytes{1, 2, 0x44, 0x0A, 0}, 2, map, 2, &codes)) << "an odd code size";
    EXPECT_FALSE(RecodeStrings(Bytes{2, 2, 0xFC, 0x0F, 0}, 2, map, 2, &codes)) << "a code that means nothing";
    EXPECT_FALSE(RecodeStrings(Bytes{}, 2, map, 2, &codes)) << "nothing";
}
