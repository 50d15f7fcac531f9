// Pictures as programs exchange them: device-independent bitmaps in one piece of memory, as the clipboard has them.
#pragma once

#include <span>

#include "imaging/image_bitmap.h"
#include "imaging/picture.h"

// The picture that the bytes (a header of any length, masks, colours and rows behind each other) hold: what a BMP file
// holds behind its own header, and read as such a file is. The fourth byte of pixels of 32 bits is their opacity also
// where no mask says so, if some pixel has 255 there. Fails as ReadPicture (picture_reader.h) does.
Result<Picture> ReadDib(std::span<const uint8_t> bytes);

// A copy of the bitmap in the colours of `palette`, all 256 of them, which is such a piece of memory; `*bytes` becomes
// how much of it. None when memory runs out.
[[nodiscard]] MemoryHandle MakeDib(MemoryHandle image, const RgbTriple* palette, size_t* bytes);

// The same with 32 bits a pixel, of which one channel is opacity, and the longest of headers, which tells so. The
// pixels of the index `transparent` have none. None also for a bitmap of more than 8 bits, and one that would be too
// large.
[[nodiscard]] MemoryHandle MakeDibWithOpacity(const MemoryHandle& image, const RgbTriple* palette, int transparent,
                                              size_t* bytes);
