// The LZW decoder and encoder in their plainest form, table by table and byte by byte: what the fast ones are held to.
#pragma once

#include "gif/lzw_decoder.h"
#include "tests/support/temp_folder.h"

// Decodes the sub-blocks in `chain` into the bitmap of `image`, as DecodeImageData does.
DecodeResult DecodeLiterally(const Bytes& chain, int codeSize, Block* image);

// What EncodeImageData writes for `image`.
Bytes EncodeLiterally(const Block& image);
