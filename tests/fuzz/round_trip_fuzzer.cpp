// Load, save, load again: the same blocks, but for what saving changes on purpose.
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "gif/gif_reader.h"
#include "gif/gif_writer.h"
#include "tests/fuzz/pixels_fit.h"

namespace {

constexpr uint64_t kMostPixels = 1 << 15;  // larger documents only cost time

// Whether a document that is saved and loaded again is the same.
bool IsComparable(const BlockList& list) {
    uint64_t pixels = 0;
    return std::ranges::all_of(list.All(), [&](const Block& block) {
        if (block.kind == kImageBlock) {
            ImageFields fields = GetImageFields(block);
            pixels += uint64_t{fields.width} * fields.height;
            // Two to four interlaced rows lose one: the order of rows visits a row that they do not have.
            bool losesRow = (fields.packed & kImageInterlaced) && fields.height >= 2 && fields.height <= 4;
            return pixels <= kMostPixels && !losesRow && PixelsFit(block);
        }
        // A text of a multiple of 255 bytes ends early when it is read again, and the document with it; only empty
        // comments are looked at twice.
        bool isText = block.data && block.kind != kBlockNamesBlock;
        return !isText || block.dataLength % 255 != 0 || (block.kind == kCommentBlock && block.dataLength == 0);
    });
}

// The blocks of a document that survive saving.
std::vector<Block> Survivors(const BlockList& list) {
    std::vector<Block> kept;
    for (const Block& block : list.All().subspan(1)) {
        bool isLost = block.kind == kBlockNamesBlock || (block.kind == kApplicationBlock && !block.data);
        if (!isLost) kept.push_back(block);
    }
    return kept;
}

void RequireSame(const Block& before, const Block& after) {
    assert(before.kind == after.kind);
    assert(memcmp(before.descriptor, after.descriptor, kDescriptorBytes) == 0);
    assert(memcmp(before.palette.Colours(), after.palette.Colours(), kPaletteBytes) == 0);
    assert(before.dataLength == after.dataLength);
    MemoryLock first(before.data), second(after.data);
    assert(MemorySize(before.data) == MemorySize(after.data));
    assert(!first == !second);
    assert(!first || memcmp(first.Bytes(), second.Bytes(), MemorySize(before.data)) == 0);
}

const char* TargetPath() {
    static const std::string path = "/dev/shm/zephyr_round_trip_" + std::to_string(getpid()) + ".gif";
    return path.c_str();
}

void RoundTrip(const BlockList& before) {
    if (!IsComparable(before)) return;
    assert(WriteGifFile(before, TargetPath()));
    BlockList after;
    assert(CreateBlockList(&after));
    assert(ReadGifFile(&after, TargetPath()) == kReadDone);
    std::vector<Block> expected = Survivors(before), found = Survivors(after);
    // One comment more: who wrote the file.
    bool isSigned = HasIdenticalComment(before, "FILE IDENTITY\r\nCreated or modified by\r\n\r\n");
    assert(found.size() == expected.size() + (isSigned ? 0 : 1));
    for (size_t i = 0; i < expected.size(); ++i) RequireSame(expected[i], found[i]);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    File file;
    file.OpenMemory(data, size);
    BlockList list;
    if (!CreateBlockList(&list)) return 0;
    if (ReadGif(&list, file) == kReadDone) RoundTrip(list);
    return 0;
}
