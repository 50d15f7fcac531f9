// Load, save, load again: the same blocks, but for what saving changes on purpose.
#include <unistd.h>

#include <cstring>
#include <string>
#include <vector>

#include "gif/gif_reader.h"
#include "gif/gif_writer.h"
#include "tests/fuzz/document_check.h"

namespace {

constexpr uint64_t kMostPixels = 1 << 15;  // larger documents only cost time

// Whether every pixel is a colour of the image's depth; others are cut when they are written.
bool PixelsFit(const Block& image) {
    ImageFields fields = GetImageFields(image);
    if (uint64_t{fields.width} * fields.height > kMostPixels) return false;
    MemoryLock lock(image.data);
    REQUIRE(lock);
    auto colours = static_cast<uint32_t>(ColoursOfPacked(fields.packed));
    for (int y = 0; y < fields.height; ++y)
        for (int x = 0; x < fields.width; ++x)
            if (GetImagePixel(lock.As<const BitmapHeader>(), x, y) >= colours) return false;
    return true;
}

// The blocks of a document that survive saving, comparable one by one.
struct Survivors {
    explicit Survivors(const BlockList& list) {
        ForEachBlock(list, [&](const Block& block, uint32_t) {
            if (block.kind == kImageBlock) {
                ImageFields fields = GetImageFields(block);
                pixels += uint64_t{fields.width} * fields.height;
                // Two to four interlaced rows lose one: the order of rows visits a row that they do not have.
                if ((fields.packed & kImageInterlaced) && fields.height >= 2 && fields.height <= 4) comparable = false;
            }
            if (block.kind == kImageBlock && !PixelsFit(block)) comparable = false;
            if (block.kind == kApplicationBlock && !block.data) return true;  // not written
            // A text of a multiple of 255 bytes ends early when it is read again, and the document with it; only empty
            // comments are looked at twice.
            bool isText = block.kind == kPlainTextBlock || block.kind == kApplicationBlock ||
                          (block.kind == kCommentBlock && block.dataLength > 0);
            if (isText && block.dataLength % 255 == 0) comparable = false;
            if (block.kind != kBlockNamesBlock && block.kind != kHeaderBlock) kept.push_back(block);
            return true;
        });
    }
    std::vector<Block> kept;
    uint64_t pixels = 0;
    bool comparable = true;
};

bool SameBytes(MemoryHandle a, MemoryHandle b, size_t bytes) {
    MemoryLock first(a);
    MemoryLock second(b);
    return bytes == 0 || (first && second && memcmp(first.Bytes(), second.Bytes(), bytes) == 0);
}

size_t BitmapBytes(const Block& image) {
    MemoryLock lock(image.data);
    auto* bitmap = lock.As<const BitmapHeader>();
    return static_cast<size_t>(ImagePixels(bitmap) - lock.Bytes()) + bitmap->imageBytes;
}

void RequireSame(const Block& before, const Block& after) {
    REQUIRE(before.kind == after.kind);
    REQUIRE(memcmp(before.descriptor, after.descriptor, kDescriptorBytes) == 0);
    REQUIRE(memcmp(before.palette, after.palette, kPaletteBytes) == 0);
    REQUIRE(before.dataLength == after.dataLength);
    size_t bytes = before.kind == kImageBlock ? BitmapBytes(before) : before.dataLength;
    REQUIRE(SameBytes(before.data, after.data, bytes));
}

const char* TargetPath() {
    static const std::string path = "/dev/shm/zephyr_round_trip_" + std::to_string(getpid()) + ".gif";
    return path.c_str();
}

void RoundTrip(const BlockList& before) {
    Survivors expected(before);
    if (!expected.comparable || expected.pixels > kMostPixels) return;
    REQUIRE(WriteGifFile(before, TargetPath()));
    BlockList after;
    REQUIRE(CreateBlockList(&after));
    REQUIRE(ReadGifFile(&after, TargetPath()) == kReadDone);
    Survivors found(after);
    // One comment more: who wrote the file.
    REQUIRE(found.kept.size() ==
            expected.kept.size() +
                (HasIdenticalComment(before, "FILE IDENTITY\r\nCreated or modified by\r\n\r\n") ? 0 : 1));
    for (size_t i = 0; i < expected.kept.size(); ++i) RequireSame(expected.kept[i], found.kept[i]);
    DestroyBlockList(&after);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    File file;
    file.OpenMemory(data, size);
    BlockList list;
    if (!CreateBlockList(&list)) return 0;
    if (ReadGif(&list, file) == kReadDone) RoundTrip(list);
    DestroyBlockList(&list);
    return 0;
}
