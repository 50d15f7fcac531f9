// Which images can be encoded without a loss.
#pragma once

#include "tests/fuzz/document_check.h"

// Whether every pixel is a colour of the image's depth; others are cut when they are written.
inline bool PixelsFit(const Block& image) {
    ImageFields fields = GetImageFields(image);
    ImageLock bitmap(image.data);
    assert(bitmap);
    auto colours = static_cast<uint32_t>(ColoursOfPacked(fields.packed));
    for (int y = 0; y < fields.height; ++y)
        for (int x = 0; x < fields.width; ++x)
            if (GetImagePixel(bitmap, x, y) >= colours) return false;
    return true;
}
