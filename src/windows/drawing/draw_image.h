// Drawing whole images at (0, 0) of a device context, the way the viewer and the editors show them.
#pragma once

#include "imaging/image_bitmap.h"
#include "platform/windows_api.h"

// Writes `palette` (as many entries as the bitmap's colour table; null: nothing) into the bitmap's colour table, where
// later drawings find it. A bitmap that others share is copied first. False when there is no memory for that.
bool AdoptColours(MemoryHandle* image, const RgbTriple* palette);

// Draws the image so that its pixel (xSource, ySource) comes to (0, 0), in the colours of `palette`, which it adopts.
// Nothing happens when the image can't be locked.
void DrawImageStraight(HDC dc, MemoryHandle* image, const RgbTriple* palette, int xSource, int ySource);

// As DrawImageStraight, but row by row in the order in which an interlaced GIF brings them, at the pace of RevealPace.
// Images of less than 5 rows miss some. The caller waits for it; input that closes the window of `dc` cuts the waiting
// short. Messages sent by other threads and keys for that window may be answered meanwhile.
void DrawImageProgressive(HDC dc, MemoryHandle* image, const RgbTriple* palette, int xSource, int ySource);

// Draws the image's own colours, leaving the target alone where pixels equal `transparentIndex`. The source offset
// moves the image by (-xSource, ySource): the vertical one has the other sense than above. When `interlaced`, in the
// rows, order and pace of DrawImageProgressive. Selects no palette. False on failure; an image without pixels is none.
bool DrawImageTransparent(HDC dc, const MemoryHandle& image, int xSource, int ySource, uint32_t transparentIndex,
                          bool interlaced);
