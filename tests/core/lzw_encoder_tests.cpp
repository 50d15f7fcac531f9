#include "gif/lzw_encoder.h"

#include <gtest/gtest.h>

#include "gif/descriptor.h"
#include "tests/support/literal_codec.h"
#include "tests/support/random_images.h"
#include "tests/support/test_blocks.h"

namespace {

enum Content { kNoise, kRuns, kGradient, kFlat, kContents };

void FillImage(Random& random, Block* image, int content, unsigned mask) {
    MemoryLock lock(image->data);
    auto* bitmap = lock.As<BitmapHeader>();
    uint32_t value = 0;
    unsigned left = 0;
    for (int y = 0; y < bitmap->height; ++y)
        for (int x = 0; x < bitmap->width; ++x) {
            if (content == kNoise || (content == kRuns && left-- == 0)) {
                value = static_cast<uint32_t>(random()) & mask;
                left = static_cast<unsigned>(random() % 30);
            }
            if (content == kGradient) value = static_cast<uint32_t>(x / 3 + y / 2) & mask;
            SetImagePixel(bitmap, x, y, value);
        }
}

Bytes Encoded(const TempFolder& folder, const Block& image) {
    std::string path = folder.Path("data");
    File file;
    EXPECT_TRUE(file.Create(path.c_str()) && EncodeImageData(file, image) && file.Close());
    return ReadAll(path);
}

// Sizes of the data sub-blocks behind the minimum code size.
std::vector<size_t> SubBlockSizes(const Bytes& data) {
    std::vector<size_t> sizes;
    for (size_t at = 1; at < data.size() && data[at]; at += data[at] + size_t{1}) sizes.push_back(data[at]);
    return sizes;
}

}  // namespace

TEST(LzwEncoder, WritesWhatTheLiteralEncoderWrites) {
    Random random(3);
    TempFolder folder;
    for (int depth = 1; depth <= 8; ++depth)
        for (int content = 0; content < kContents; ++content)
            for (int i = 0; i < 14; ++i) {
                bool isLarge = i == 0;  // fills the table several times
                int width = isLarge ? 211 : static_cast<int>(1 + random() % 40);
                int height = isLarge ? 160 : static_cast<int>(1 + random() % 20);
                OwnedBlock image(MakeImage(width, height, depth, random() % 2 ? kImageInterlaced : 0));
                // One in three images has pixel values beyond its depth, as far as its bitmap can hold them.
                FillImage(random, &image, content, i % 3 ? (1u << depth) - 1 : 255);
                SCOPED_TRACE(std::to_string(width) + "x" + std::to_string(height) + " depth " + std::to_string(depth) +
                             " content " + std::to_string(content));
                Bytes ours = Encoded(folder, image);
                ASSERT_EQ(ours, EncodeLiterally(image));
                std::vector<size_t> sizes = SubBlockSizes(ours);
                for (size_t b = 0; b + 1 < sizes.size(); ++b) ASSERT_TRUE(sizes[b] == 251 || sizes[b] == 252);
            }
}

TEST(LzwEncoder, WhatItWritesDecodesToTheSamePixels) {
    Random random(4);
    TempFolder folder;
    for (int depth = 1; depth <= 8; ++depth)
        for (int flags : {0, int{kImageInterlaced}}) {
            OwnedBlock image(MakeImage(150, 120, depth, flags));
            OwnedBlock decoded(MakeImage(150, 120, depth, flags));
            FillImage(random, &image, kNoise, (1u << depth) - 1);
            Bytes data = Encoded(folder, image);
            File file;
            file.OpenMemory(data.data() + 1, data.size() - 1);
            EXPECT_EQ(DecodeImageData(file, data[0], decoded), kDecodeDone);
            EXPECT_TRUE(SameBitmap(image.data, decoded.data)) << depth;
        }
}

TEST(LzwEncoder, SmallestImages) {
    struct Case {
        int width, height, depth;
        Bytes data;
    } const cases[] = {
        {1, 1, 1, {2, 2, 0x44, 0x01, 0}},              // clear 4, pixel 0, end 5, of three bits each
        {1, 1, 8, {8, 4, 0x00, 0x01, 0x04, 0x04, 0}},  // clear 256, pixel 0, end 257, of nine bits each
        {0, 5, 1, {2, 1, 0x2C, 0}},                    // clear, end
        {5, 0, 3, {3, 1, 0x98, 0}},
        {0, 0, 8, {8, 3, 0x00, 0x03, 0x02, 0}},
    };
    TempFolder folder;
    for (const Case& c : cases) {
        OwnedBlock image(MakeImage(c.width, c.height, c.depth));
        EXPECT_EQ(Encoded(folder, image), c.data) << c.width << "x" << c.height << " depth " << c.depth;
    }
}

TEST(LzwEncoder, ImagesThatTheirDescriptorsDoNotDescribe) {
    TempFolder folder;
    File file;
    ASSERT_TRUE(file.Create(folder.Path("data").c_str()));
    OwnedBlock trueColour(MakeImage(2, 2, 8));
    FreeMemory(trueColour.data);
    trueColour.data = CreateImageBitmap(2, 2, nullptr, 24);
    OwnedBlock otherSize(MakeImage(2, 2, 8));
    PutImageFields(&otherSize, {0, 0, 3, 2, 7});
    OwnedBlock without;
    for (const Block* image :
         {static_cast<Block*>(&trueColour), static_cast<Block*>(&otherSize), static_cast<Block*>(&without)})
        EXPECT_FALSE(EncodeImageData(file, *image));
}
