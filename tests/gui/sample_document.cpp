#include "tests/gui/sample_document.h"

#include <cstring>

#include "gif/default_blocks.h"
#include "gif/descriptor.h"
#include "tests/gui/picture.h"

SampleDocument::SampleDocument() {
    EXPECT_TRUE(NewDocument(&list_));
    AppendImage(40, 30, 4);
    for (uint16_t kind : {kControlBlock, kPlainTextBlock, kCommentBlock, kLoopBlock}) Append(kind);
    AppendImage(20, 10, 8);
    for (uint16_t kind : {kApplicationBlock, kUnknownBlock, kEmptyBlock, kBlockNamesBlock, kControlBlock}) Append(kind);
    RenumberBlocks(&list_);
}

void SampleDocument::Append(uint16_t kind) {
    Block block;
    if (!MakeDefaultBlock(nullptr, &list_, &block, kind, nullptr, nullptr)) {
        block = {};
        block.kind = kind;
        memcpy(block.descriptor,
               "\x0B"
               "KELMOR\0\0"
               "1.0",
               kApplicationDescriptorBytes);
    }
    EXPECT_TRUE(AppendBlock(&list_, &block));
}

void SampleDocument::AppendImage(int width, int height, int depth) {
    RgbTriples palette = {};
    for (int i = 0; i < 16; ++i)
        palette[i] = {static_cast<uint8_t>(i), static_cast<uint8_t>(2 * i), static_cast<uint8_t>(3 * i)};
    bool local = depth < 8;
    Block block;
    MemoryHandle bitmap = MakeImage(width, height, depth, palette,
                                    [=](int x, int) { return static_cast<uint32_t>(local ? x % 16 : 100 + x); });
    EXPECT_TRUE(MakeDefaultBlock(nullptr, &list_, &block, kImageBlock, bitmap, local ? "first.gif" : nullptr));
    ImageFields image = GetImageFields(block);
    if (local) image.packed |= kHasPalette;
    if (!local) memset(block.palette, 0, kPaletteBytes);
    PutImageFields(&block, image);
    EXPECT_TRUE(AppendBlock(&list_, &block));
}

std::string SampleDocument::TextOf(int index) const {
    Block block = At(index);
    MemoryLock lock(block.data);
    return lock ? std::string(lock.As<char>(), block.dataLength) : std::string();
}
