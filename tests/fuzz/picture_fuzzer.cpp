// Any bytes as a picture of another kind, and what becomes of it in a GIF file.
#include "imaging/dib.h"
#include "imaging/jpeg_markers.h"
#include "imaging/picture_bitmap.h"
#include "imaging/picture_reader.h"
#include "tests/fuzz/document_check.h"

namespace {

constexpr int64_t kMostPixelsLookedAt = int64_t{1} << 20;  // a few bytes may stand for far more

// No opaque pixel has the transparent index, and no pixel an index beyond the depth.
void CheckBitmap(const PictureBitmap& made) {
    ImageLock bitmap(made.bitmap);
    ImageLock mask(made.mask);
    if (!bitmap || bitmap->bitCount > 8 || int64_t{bitmap->width} * bitmap->height > kMostPixelsLookedAt) return;
    assert(bitmap->bitCount == BitCountForDepth(made.depth));
    assert((made.transparentIndex == kNoTransparentIndex) == !mask);
    for (int y = 0; y < bitmap->height; ++y)
        for (int x = 0; x < bitmap->width; ++x) {
            const uint32_t index = GetImagePixel(bitmap, x, y);
            assert(index < 1u << made.depth);
            const bool isTransparent = mask && GetImagePixel(mask, x, y) == 0;
            assert(isTransparent == (static_cast<int>(index) == made.transparentIndex));
        }
}

// What is read has pixels, and becomes a good bitmap.
void CheckPicture(const Result<Picture>& picture) {
    if (!picture) return;
    assert(picture->width > 0);
    assert(picture->height > 0);
    const Result<PictureBitmap> made = MakePictureBitmap(*picture);
    if (made) CheckBitmap(*made);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::span file(data, size);
    const int orientation = TiffOrientation(file);
    assert(orientation >= kUpright);
    assert(orientation <= 8);
    CheckPicture(ReadPicture(file));
    CheckPicture(ReadDib(file));
    return 0;
}
