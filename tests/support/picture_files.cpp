#include "tests/support/picture_files.h"

#include "tests/support/test_blocks.h"

void WritePicture(const std::string& path, const MemoryHandle& image, int depth) {
    BlockList document;
    ASSERT_TRUE(NewDocument(&document));
    ImageLock bitmap(image);
    RgbTriples colours = {};
    GetImagePalette(bitmap, colours);
    Block& header = document.blocks[0];
    ASSERT_TRUE(header.palette.Set(colours));
    HeaderFields fields = GetHeaderFields(header);
    fields.packed = static_cast<uint8_t>(kHasPalette | (depth - 1));
    PutHeaderFields(&header, fields);
    Block block = MakeImage(bitmap->width, bitmap->height, depth);
    {
        ImageWriteLock to(&block.data);
        for (int y = 0; y < bitmap->height; ++y)
            for (int x = 0; x < bitmap->width; ++x) SetImagePixel(to, x, y, GetImagePixel(bitmap, x, y));
    }
    ASSERT_TRUE(AppendBlock(&document, block));
    ASSERT_TRUE(WriteGifFile(document, path.c_str()));
}
