// The parts of a GIF file that whole documents and single pictures are read from alike.
#pragma once

#include "gif/block_list.h"
#include "platform/file.h"

enum ImageResult {
    kImageFailed,  // cut short, without a palette, corrupt, or too large for the memory
    kImageRead,
    kImageLeftBlank,  // its bitmap is there, but there was no memory to decode into it
};

enum HeaderResult { kHeaderCut, kHeaderRead, kHeaderNotGif };

// Reads the header and the global colour table into `block`, which comes in zeroed and becomes a HEADER. A file may
// carry a prefix of 128 bytes before its signature. kHeaderCut: the colour table is cut short.
HeaderResult ReadGifHeader(File& file, Block* block);

// Reads an image, its introducer just read, into `block`, which comes in zeroed and becomes an IMAGE: its descriptor,
// its own palette, if any, and its bitmap, decoded and coloured by its own or the global palette. Leaves the file
// between two sub-blocks of the image's data: SkipSubBlocks finds their end.
ImageResult ReadImage(File& file, Block* block, const GlobalPalette& global);
