// Giving an image another palette, each pixel becoming the nearest colour.
#pragma once

#include "imaging/image_bitmap.h"
#include "imaging/stop.h"
#include "platform/result.h"

// Makes a bitmap with the pixels of `source` (1, 4, 8 or 24 bits) in the colours of `palette`, of which the first
// 1 << depth count (depth 1 to 8). All 256 entries must be there: colours without an exact match are looked up among
// all of them, used or not. `stop` may be null. A 1-bit source counts as black and white, whatever its own two colours
// are. `source` stays as it is. Fails with kNoMemory (also for another depth) or kStopped.
Result<MemoryHandle> RemapImage(const MemoryHandle& source, const RgbTriple* palette, int depth,
                                StopQuestion* stop = nullptr);

// What RemapImage makes of ExpandToTrueColour(source): colours without an exact match are rounded to 5 bits a channel
// before the nearest one is looked for. The expanded image itself is not made.
Result<MemoryHandle> RemapTrueColours(const MemoryHandle& source, const RgbTriple* palette, int depth);
