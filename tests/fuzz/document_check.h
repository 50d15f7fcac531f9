// What holds for every document, however broken the file was.
#pragma once

#include <cstdio>
#include <cstdlib>

#include "gif/block_line.h"
#include "gif/block_list.h"
#include "gif/descriptor.h"

#define REQUIRE(condition)                                                          \
    do {                                                                            \
        if (!(condition)) {                                                         \
            fprintf(stderr, "%s:%d: not so: %s\n", __FILE__, __LINE__, #condition); \
            abort();                                                                \
        }                                                                           \
    } while (false)

inline void CheckDocument(const BlockList& list) {
    REQUIRE(list.count < list.capacity);
    ForEachBlock(list, [](const Block& block, uint32_t index) {
        REQUIRE((block.kind == kHeaderBlock) == (index == 0));
        REQUIRE(block.dataLength <= kMaxTextBytes);
        char line[kBlockLineBytes];
        FormatBlockLine(line, block);
        if (block.kind != kImageBlock) return true;
        ImageFields fields = GetImageFields(block);
        int width = -1;
        int height = -1;
        int bitCount = -1;
        REQUIRE(GetImageInfo(block.data, &width, &height, &bitCount, nullptr));
        REQUIRE(width == fields.width && height == fields.height);
        REQUIRE(bitCount == BitCountForDepth(DepthOfPacked(fields.packed)));
        return true;
    });
}
