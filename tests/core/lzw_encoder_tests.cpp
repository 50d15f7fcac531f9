#include "gif/lzw_encoder.h"

#include "tests/support/literal_codec.h"
#include "tests/support/random_images.h"
#include "tests/support/test_blocks.h"

namespace {

// Runs of one value, `length` pixels long on the average; every second one goes on with the next value.
void FillWithRuns(Random& random, Block* image, unsigned length, uint32_t mask) {
    ImageWriteLock bitmap(&image->data);
    uint32_t value = 0;
    for (int y = 0; y < bitmap->height; ++y)
        for (int x = 0; x < bitmap->width; ++x) {
            if (random() % length == 0) value = (random() % 2 ? value + 1 : static_cast<uint32_t>(random())) & mask;
            SetImagePixel(bitmap, x, y, value);
        }
}

// What is written for the image; empty when that fails.
Bytes Encoded(const Block& image) {
    TempFolder folder;
    std::string path = folder.Path("data");
    File file;
    EXPECT_TRUE(file.Create(path.c_str()));
    return EncodeImageData(file, image) && file.Close() ? ReadAll(path) : Bytes();
}

}  // namespace

// kQuirkSubBlockBytes among others, which the literal encoder has in a form of its own.
TEST(LzwEncoder, WritesWhatTheLiteralEncoderWrites) {
    Random random(3);
    for (int depth = 1; depth <= 8; ++depth)
        for (unsigned runs : {1u, 4u, 30u, 10000u})
            for (int i = 0; i < 14; ++i) {
                bool isLarge = i == 0;  // fills the table several times, and the file's buffer
                int width = isLarge ? 511 : static_cast<int>(1 + random() % 40);
                int height = isLarge ? 160 : static_cast<int>(1 + random() % 20);
                Block image(MakeImage(width, height, depth, random() % 2 ? kImageInterlaced : 0));
                // One in three images has pixel values beyond its depth, as far as its bitmap can hold them.
                FillWithRuns(random, &image, runs, i % 3 ? (1u << depth) - 1 : 255);
                ASSERT_EQ(Encoded(image), EncodeLiterally(image))
                    << width << "x" << height << " depth " << depth << " runs of " << runs;
            }
}

TEST(LzwEncoder, ImagesThatTheirDescriptorsDoNotDescribe) {
    Block trueColour(MakeImage(2, 2, 24)), wider(MakeImage(2, 2, 8)), higher(MakeImage(2, 2, 8)), without;
    PutImageFields(&wider, {0, 0, 3, 2, 7});
    PutImageFields(&higher, {0, 0, 2, 3, 7});
    for (const Block& image : {trueColour, wider, higher, without}) EXPECT_EQ(Encoded(image), Bytes());
}
