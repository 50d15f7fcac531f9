// Pictures as programs exchange them: device-independent bitmaps in one piece of memory, as the clipboard has them.
#pragma once

#include <span>

#include "imaging/image_bitmap.h"
#include "platform/result.h"

// The bitmap that the bytes (a header of 40 or more bytes, masks, colours and rows behind each other) hold. Pixels of
// up to 8 bits keep their indexes and colours, those of 1 bit become 4, as a bitmap of 1 bit counts as black and white;
// all others become 24 bits, opaque. Fails with kDamaged for everything else and for what breaks off, kNoMemory.
Result<MemoryHandle> ReadDib(std::span<const uint8_t> bytes);

// A copy of the bitmap in the colours of `palette`, all 256 of them, which is such a piece of memory; `*bytes` becomes
// how much of it. None when memory runs out.
[[nodiscard]] MemoryHandle MakeDib(MemoryHandle image, const RgbTriple* palette, size_t* bytes);
