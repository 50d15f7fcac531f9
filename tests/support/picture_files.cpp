#include "tests/support/picture_files.h"

#include "tests/support/test_blocks.h"

void WritePicture(const std::string& path, MemoryHandle image, int depth) {
    OwnedBlockList document;
    ASSERT_TRUE(NewDocument(&document));
    Block header = BlockAt(document, 0);
    MemoryLock lock(image);
    auto* bitmap = lock.As<const BitmapHeader>();
    GetImagePalette(bitmap, header.palette);
    HeaderFields fields = GetHeaderFields(header);
    fields.packed = static_cast<uint8_t>(kHasPalette | (depth - 1));
    PutHeaderFields(&header, fields);
    PutBlock(&document, header, 0);

    OwnedBlock block(MakeImage(bitmap->width, bitmap->height, depth));
    MemoryLock blockLock(block.data);
    for (int y = 0; y < bitmap->height; ++y)
        for (int x = 0; x < bitmap->width; ++x)
            SetImagePixel(blockLock.As<BitmapHeader>(), x, y, GetImagePixel(bitmap, x, y));
    ASSERT_TRUE(AppendBlock(&document, &block));
    static_cast<Block&>(block) = {};
    ASSERT_TRUE(WriteGifFile(document, path.c_str()));
}
