// What holds for every document, however broken the file was.
#pragma once

#undef NDEBUG  // the checks hold in every build
#include <cassert>

#include "gif/block_line.h"
#include "gif/block_list.h"
#include "gif/descriptor.h"

// `isWhole`: images may then lack their pixels, or have some that are no colours of their palette.
inline void CheckDocument(const BlockList& list, bool isWhole = false) {
    assert(list.count < list.capacity);
    for (const Block& block : list.All()) {
        assert((block.kind == kHeaderBlock) == (&block == list.blocks.get()));
        assert(block.owner == &list);
        assert(block.dataLength <= kMaxTextBytes);
        assert(!FormatBlockLine(block).empty());
        if (block.kind != kImageBlock) continue;
        if (isWhole && !block.data) continue;
        ImageFields fields = GetImageFields(block);
        std::optional<ImageInfo> info = GetImageInfo(block.data);
        assert(info);
        assert(info->width == fields.width);
        assert(info->height == fields.height);
        const int bitCount = BitCountForDepth(DepthOfPacked(fields.packed));
        assert(isWhole ? info->bitCount >= bitCount : info->bitCount == bitCount);
    }
}
