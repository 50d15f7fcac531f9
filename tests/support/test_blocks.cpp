#include "tests/support/test_blocks.h"

LoadedGif::LoadedGif(const Bytes& bytes, Manner manner) {
    (void)CreateBlockList(this);
    File file;
    file.OpenMemory(bytes.data(), bytes.size());
    result = ReadGif(this, file, &report, manner);
}

Block OfKind(uint16_t kind) {
    Block block;
    block.kind = kind;
    return block;
}

MemoryHandle MakeRow(int bitCount, const std::vector<uint32_t>& pixels, const RgbTriple* colours) {
    MemoryHandle image = CreateImageBitmap(static_cast<int>(pixels.size()), 1, colours, bitCount);
    ImageWriteLock bitmap(&image);
    int x = 0;
    for (uint32_t pixel : pixels) SetImagePixel(bitmap, x++, 0, pixel);
    return image;
}

Block MakeImage(int width, int height, int depth, int flags) {
    Block block = OfKind(kImageBlock);
    block.data = CreateImageBitmap(width, height, nullptr, depth);
    PutImageFields(&block, {0, 0, static_cast<uint16_t>(width), static_cast<uint16_t>(height),
                            static_cast<uint8_t>(flags | (depth - 1))});
    return block;
}

Block MakeText(uint16_t kind, std::string_view text) {
    Block block = OfKind(kind);
    (void)SetBlockText(&block, text.data(), static_cast<uint32_t>(text.size()));
    return block;
}

void GiveSource(Block* block, std::string_view own, std::string_view stray) {
    const std::string bytes = std::string(stray).append(own);
    block->aux = AllocateMemory(bytes.size());
    WriteLock lock(&block->aux);
    ASSERT_TRUE(lock);
    bytes.copy(lock.As<char>(), bytes.size());
    block->source = {0, static_cast<uint32_t>(stray.size()), static_cast<uint32_t>(own.size())};
}

std::string TextOf(const Block& block) {
    return block.data ? GetBlockText(block) : "(none)";
}

std::string DescriptorOf(const Block& block) {
    std::string bytes(block.descriptor, block.descriptor + kDescriptorBytes);
    return bytes.substr(0, bytes.find_last_not_of('\0') + 1);
}

std::string NameOf(const Block& block) {
    return GetBlockName(block).value_or("");
}

Block BlockAt(const BlockList& list, uint32_t index) {
    Block block;
    GetBlock(list, &block, index);
    return block;
}

void Append(BlockList* list, Block block) {
    if (!list->blocks) (void)CreateBlockList(list);
    (void)AppendBlock(list, std::move(block));
}

std::string KindsOf(const BlockList& list) {
    std::string kinds;
    for (const Block& block : list.All()) kinds += static_cast<char>('0' + block.kind);
    return kinds;
}

std::string PixelsOf(const Block& image) {
    ImageLock bitmap(image.data);
    if (!bitmap) return "(none)";
    std::string pixels;
    for (int y = 0; y < bitmap->height; ++y) {
        if (y) pixels += ' ';
        for (int x = 0; x < bitmap->width; ++x) pixels += "0123456789abcdef"[GetImagePixel(bitmap, x, y) & 15];
    }
    return pixels;
}
