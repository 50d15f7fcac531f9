// Blocks of one document joining another.
#pragma once

#include <span>

#include "editing/block_operations.h"

// What to do with images and texts whose colours are not the document's.
enum class ForeignColours : uint8_t {
    kRefuse,
    kRemap,   // each pixel in the nearest colour of the document
    kDither,  // images in mixtures of them
    kKeep,    // images get them as a palette of their own; texts can't
};

struct CopyOutcome : EditOutcome {
    bool wantsChoice = false;        // refused for the colours alone
    uint32_t first = 0, copied = 0;  // the copies: so many blocks, from this number on
};

// Puts copies of the blocks of `other`, in the order given, behind the block `at` of `list`. They hold none of the
// memory of `other` but pixels and texts, and keep the bytes of its file where their content stays.
//
// An image stays as it is when its pixels show the same colours in the palette that it is shown in here; images of a
// document that keeps all (kReadWhole) and has no global palette keep theirs unasked. Where pixels are exchanged, the
// transparent index of the control copied with the image is, too. Refused: the header; a second loop block; a plain
// text where there is no global palette; an image whose pixels can't be had and need to be; an image in which the
// document's colours leave none for what is transparent.
//
// With Looks::kKept all images look as they did in their own documents; `colours` should be kKeep then.
CopyOutcome CopyBlocks(const BlockList& other, std::span<const uint32_t> blocks, uint32_t at, ForeignColours colours,
                       Looks looks, BlockList* list);
