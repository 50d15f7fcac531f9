// What holds for every document, however broken the file was.
#pragma once

#undef NDEBUG  // the checks hold in every build
#include <cassert>

#include "gif/block_line.h"
#include "gif/block_list.h"
#include "gif/descriptor.h"

inline void CheckDocument(const BlockList& list) {
    assert(list.count < list.capacity);
    ForEachBlock(list, [](const Block& block, uint32_t index) {
        assert((block.kind == kHeaderBlock) == (index == 0));
        assert(block.dataLength <= kMaxTextBytes);
        char line[kBlockLineBytes];
        FormatBlockLine(line, block);
        if (block.kind != kImageBlock) return true;
        ImageFields fields = GetImageFields(block);
        int width = -1;
        int height = -1;
        int bitCount = -1;
        assert(GetImageInfo(block.data, &width, &height, &bitCount, nullptr));
        assert(width == fields.width);
        assert(height == fields.height);
        assert(bitCount == BitCountForDepth(DepthOfPacked(fields.packed)));
        return true;
    });
}
