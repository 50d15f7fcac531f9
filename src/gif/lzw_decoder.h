// Decoding the LZW-compressed pixels of one image.
#pragma once

#include "gif/block.h"
#include "gif/manner.h"
#include "platform/file.h"

enum DecodeResult {
    kDecodeCorrupt = 0,      // a code that can't occur, or (classic) a bitmap that can't be locked
    kDecodeDone = 1,         // the end code was met or the data ran out
    kDecodeBadCodeSize = 2,  // outside 2..8, or 1..11 in the whole manner; nothing was decoded
    kDecodeNoMemory = 6,     // no work storage, or in the whole manner no bitmap to be locked; nothing was decoded
};

// Decodes the data sub-blocks at which `file` stands into the bitmap of `*image`, whose descriptor gives size,
// interlace and bit depth. `codeSize` is the minimum code size read before them. Pixels without data stay as they are.
// Ends somewhere in the chain of sub-blocks: the caller finds its end.
//
// In the whole manner all that the data holds is decoded: also the sub-block that the end of the file cuts off, the row
// that is not whole, and what stands before a code that can't occur. `*pixels`, unless null, becomes how many there
// were, those beyond the image left out, and `*values` all of their values or-ed: a bitmap with too few bits for it has
// lost some.
DecodeResult DecodeImageData(File& file, int codeSize, Block* image, Manner manner = Manner::kClassic,
                             uint64_t* pixels = nullptr, unsigned* values = nullptr);
