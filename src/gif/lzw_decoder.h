// Decoding the LZW-compressed pixels of one image.
#pragma once

#include "gif/block.h"
#include "platform/file.h"

enum DecodeResult {
    kDecodeCorrupt = 0,      // a code that can't occur, or a bitmap that can't be locked
    kDecodeDone = 1,         // the end code was met or the data ran out
    kDecodeBadCodeSize = 2,  // outside 2..8; nothing was decoded
    kDecodeNoMemory = 6,     // no work storage; nothing was decoded
};

// Decodes the data sub-blocks at which `file` stands into the bitmap of `*image`, whose descriptor gives size,
// interlace and bit depth. `codeSize` is the minimum code size read before them. Pixels without data stay as they are.
// Ends somewhere in the chain of sub-blocks: the caller finds its end.
DecodeResult DecodeImageData(File& file, int codeSize, Block* image);
