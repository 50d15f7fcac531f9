// Any bytes read whole: they come out again as they were. A document without damages moreover stays itself when all of
// it is encoded anew, and when a block is taken out.
#include <algorithm>
#include <cstring>
#include <vector>

#include "gif/gif_reader.h"
#include "gif/gif_writer.h"
#include "gif/source_bytes.h"
#include "tests/fuzz/document_check.h"
#include "tests/fuzz/pixels_fit.h"

namespace {

using Bytes = std::vector<uint8_t>;

Bytes Write(const BlockList& list) {
    File file;
    assert(file.CreateMemory());
    assert(WriteWholeGif(list, file, nullptr));
    return {file.Written().begin(), file.Written().end()};
}

ReadResult Read(const Bytes& bytes, BlockList* list, ReadReport* report) {
    File file;
    file.OpenMemory(bytes.data(), bytes.size());
    assert(CreateBlockList(list));
    return ReadGif(list, file, report, Manner::kWhole);
}

// Whether encoding loses nothing of the block: texts that are kept whole, pixels that fit their image's depth.
bool IsEncodable(const Block& block) {
    if (block.kind == kImageBlock) return block.data && PixelsFit(block);
    return block.dataLength < kMaxTextBytes;
}

void RequireSame(const BlockList& list, const Bytes& written) {
    BlockList again;
    ReadReport report;
    assert(Read(written, &again, &report) == kReadDone);
    assert(std::ranges::all_of(report.damages, IsHarmless));
    assert(again.count == list.count);
    for (uint32_t i = 0; i < list.count; ++i) assert(SameContent(list.blocks[i], again.blocks[i]));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const Bytes bytes(data, data + size);
    BlockList list;
    ReadReport report;
    ReadResult result = Read(bytes, &list, &report);
    if (result == kReadNotGif) return 0;
    assert(result == kReadDone);
    CheckDocument(list, true);
    assert(Write(list) == bytes);
    if (!std::ranges::all_of(report.damages, IsHarmless)) return 0;

    if (list.count > 1 && size > 0) {
        uint32_t gone = 1 + data[size / 2] % (list.count - 1);
        RemoveBlocks(&list, {&gone, 1});
        RequireSame(list, Write(list));
    }
    if (!std::ranges::all_of(list.All(), IsEncodable)) return 0;
    for (Block& block : list.All()) assert(MarkChanged(&block));
    RequireSame(list, Write(list));
    return 0;
}
