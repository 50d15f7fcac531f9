// Encoding the pixels of one image with LZW.
#pragma once

#include "gif/block.h"
#include "gif/manner.h"
#include "platform/file.h"

// Bits that the largest index among the pixels takes, 1 at least.
int DepthOfPixels(ConstLockedBitmap bitmap);

// Writes the minimum code size, the LZW codes in data sub-blocks and the closing empty sub-block of the IMAGE block
// `image` (rows in interlaced order when its descriptor says so). Pixel values that do not fit the image's bit depth
// are written as their low bits, in the whole manner as they are, by larger codes. The manner also decides on the order
// of interlaced rows (interlace.h). False on a failed allocation, lock or write.
[[nodiscard]] bool EncodeImageData(File& file, const Block& image, Manner manner = Manner::kClassic);
