// Any bytes as a GIF file: what its blocks cost adds up to it, and every edit that is advised saves what it promises.
#include "gif/gif_writer.h"
#include "size/advice.h"
#include "size/block_sizes.h"
#include "size/pixel_costs.h"
#include "tests/fuzz/document_check.h"

namespace {

constexpr uint64_t kMostPixels = 1 << 15;  // larger documents only cost time

uint64_t PixelsOf(const Block& block) {
    const ImageFields fields = GetImageFields(block);
    return block.kind == kImageBlock ? uint64_t{fields.width} * fields.height : 0;
}

void CheckCosts(const Block& image, const BlockSizes& sizes) {
    PixelCosts costs;
    assert(MeasurePixelCosts(image, &costs));
    assert(costs.pixels <= PixelsOf(image));
    assert((costs.pixelBits + costs.otherBits) / 8 <= sizes.Own());
    assert(costs.most <= kMostBitsOfPixel);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    File file;
    BlockList list;
    ReadReport report;
    DocumentSizes sizes;
    std::vector<Advice> advice;
    file.OpenMemory(data, size);
    if (!CreateBlockList(&list) || ReadGif(&list, file, &report, Manner::kWhole) != kReadDone) return 0;
    assert(MeasureDocument(list, &sizes));
    assert(sizes.Total() == size);
    uint64_t pixels = 0;
    for (uint32_t i = 0; i < list.count && pixels <= kMostPixels; ++i) {
        pixels += PixelsOf(list.blocks[i]);
        if (list.blocks[i].kind == kImageBlock && pixels <= kMostPixels) CheckCosts(list.blocks[i], sizes.blocks[i]);
    }
    if (pixels > kMostPixels) return 0;
    assert(FindAdvice(list, report, &advice));
    for (const Advice& edit : advice) assert(edit.gain > 0 && edit.gain < size);
    return 0;
}
