// Pictures of other kinds becoming image bitmaps.
#pragma once

#include "imaging/image_bitmap.h"
#include "imaging/picture.h"

// Pixels of less opacity than this are transparent, all others opaque: a GIF file has nothing between.
constexpr uint8_t kLeastOpacity = 128;

constexpr int kNoTransparentIndex = -1;

struct PictureBitmap {
    MemoryHandle bitmap;
    int depth = 0;  // of its colours: 1 to 8, or 24
    // Of a picture that is transparent somewhere: a bitmap of 1 bit, 0 at these pixels and 1 elsewhere. Otherwise none.
    MemoryHandle mask;
    // The index that they have and no other pixel has; kNoTransparentIndex at 24 bits, where their colour is one that
    // the opaque pixels have, too.
    int transparentIndex = kNoTransparentIndex;
};

// The pixels of a picture, without their being handed over.
struct PictureView {
    int width, height;
    const uint8_t* pixels;          // as those of Picture
    std::span<const Rgba> colours;  // none: pixels bring their own
};

// A picture of colours by number keeps these numbers, and has the least depth that holds them. Any other gets its
// colours by number, in the order in which its pixels from the top left show them, when they are not more than 256, the
// transparent one included, and 24 bits otherwise. It gets at least depth 2, as images of 1 bit count as black and
// white in every conversion. Fails with kNoMemory.
Result<PictureBitmap> MakePictureBitmap(const PictureView& picture);
Result<PictureBitmap> MakePictureBitmap(const Picture& picture);

// Gives those pixels of `*bitmap` (1, 4 or 8 bits, colours of `depth` bits) that `mask` names transparent an index that
// no other pixel has: `wanted` if it is free, or else the last one that is. When none is, the rarest index gives way:
// its pixels take the index of the nearest other colour. Returns the index, or kNoTransparentIndex, with the bitmap of
// no further use, when memory runs out.
int SetTransparentPixels(MemoryHandle* bitmap, const MemoryHandle& mask, int depth, int wanted = kNoTransparentIndex);
