#include "tests/support/picture_files.h"

#include "imaging/png_writer.h"
#include "imaging/row_packer.h"
#include "tests/support/test_blocks.h"

namespace {

void WritePng(const std::string& path, const PngLayout& layout, auto rowAt) {
    ByteBuffer png;
    PngWriter writer;
    ASSERT_TRUE(writer.Start(layout, &png));
    for (uint32_t y = 0; y < layout.height; ++y) ASSERT_TRUE(writer.AddRow(rowAt(y)));
    ASSERT_TRUE(writer.Finish());
    WriteAll(path, Bytes(png.Content().begin(), png.Content().end()));
}

}  // namespace

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

void WriteNumberedPng(const std::string& path, const MemoryHandle& image, int depth) {
    ImageLock bitmap(image);
    const auto width = static_cast<uint32_t>(bitmap->width), height = static_cast<uint32_t>(bitmap->height);
    const RgbQuad* table = ImageColourTable(bitmap);
    std::vector<uint32_t> colours;
    for (int i = 0; i < 1 << depth; ++i)
        colours.push_back(0xFF000000u |
                          static_cast<uint32_t>(table[i].blue << 16 | table[i].green << 8 | table[i].red));
    Bytes row(width);
    WritePng(path, {width, height, PngForm::kIndexed, colours}, [&](uint32_t y) {
        UnpackRow(row.data(), ImageRow(bitmap, static_cast<int>(y)), bitmap->width, bitmap->bitCount);
        return row.data();
    });
}

void WriteColouredPng(const std::string& path, int width, const std::vector<uint32_t>& pixels) {
    const auto columns = static_cast<uint32_t>(width);
    WritePng(path, {columns, static_cast<uint32_t>(pixels.size()) / columns, PngForm::kFull, {}},
             [&](uint32_t y) { return reinterpret_cast<const uint8_t*>(&pixels[y * columns]); });
}
