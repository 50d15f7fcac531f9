#include "imaging/dither_two_colours.h"

#include <algorithm>
#include <array>

#include "imaging/luminance.h"
#include "imaging/pixel_rows.h"
#include "imaging/row_packer.h"
#include "imaging/user_abort.h"

namespace {

using Levels = std::array<uint8_t, 256>;

// Stretches the scale of greys. With the usual settings its ends, 20 levels each, are given to full black and white.
// Sums fall just short of whole numbers there (entry 27 is 31, not 32), so more precision would change images; volatile
// makes compilers for 32 bits, which keep sums in wider registers, round each to a double.
Levels MakeLevels(const DitherSettings& settings) {
    int contrast = std::clamp(settings.contrast, 0, 127);
    volatile double step = 256.0 / (256 - 2 * contrast);
    volatile double value = std::clamp(settings.brightness, 0, 255) - contrast;
    Levels levels;
    for (uint8_t& level : levels) {
        level = static_cast<uint8_t>(std::clamp(double{value}, 1.0, 254.0));
        value = value + step;
    }
    return levels;
}

// The whole image in grey, in stored order, each row padded to 4 bytes; row errors are added to it in place.
struct GreyImage {
    uint8_t* pixels;
    int width, height;
    uint32_t rowBytes;
    int darkest = 255, lightest = 0;
};

void FillGrey(ConstLockedBitmap source, uint8_t* bgr, GreyImage* grey) {
    const TrueColours colours = GetTrueColours(source);
    uint8_t* row = grey->pixels;
    for (int y = grey->height - 1; y >= 0; --y, row += grey->rowBytes) {
        ExpandRow(ImageRow(source, y), grey->width, source->bitCount, colours, bgr);
        const uint8_t* pixel = bgr;
        for (int x = 0; x < grey->width; ++x, pixel += 3) {
            int luminance = Luminance(pixel[2], pixel[1], pixel[0]);
            row[x] = static_cast<uint8_t>(luminance);
            grey->darkest = std::min(grey->darkest, luminance);
            grey->lightest = std::max(grey->lightest, luminance);
        }
    }
}

void Give(uint8_t* pixel, int share) {
    *pixel = static_cast<uint8_t>(std::clamp(*pixel + share, 0, 255));
}

// Hands the shares of an error on. `pixel` is the one at column x; the row after it lies one row of bytes further.
// Column 0 hands its lower left share to the byte before that row. When the width is a multiple of 4 this is the last
// pixel of the row itself, otherwise padding. Column 1 hands none down to column 0. Both have always been so.
void Spread(const GreyImage& grey, uint8_t* pixel, int x, bool lastRow, int share) {
    bool lastColumn = x + 1 == grey.width;
    if (!lastColumn) Give(pixel + 1, 7 * share);
    if (lastRow) return;
    uint8_t* below = pixel + grey.rowBytes;
    if (!lastColumn) Give(below + 1, share);
    if (x != 1) Give(below - 1, 3 * share);
    Give(below, 5 * share);
}

void DiffuseRow(const GreyImage& grey, const Levels& levels, uint8_t* row, bool lastRow, uint8_t* bits) {
    int threshold = (grey.lightest + grey.darkest) >> 1;
    for (int x = 0; x < grey.width; ++x) {
        int level = levels[row[x]];
        bits[x] = level > threshold;
        int error = level - (bits[x] ? grey.lightest : grey.darkest);
        Spread(grey, row + x, x, lastRow, error >> 4);
    }
}

}  // namespace

MemoryHandle DitherToTwoColours(ConstLockedBitmap source, const RgbTriple* palette, unsigned flags,
                                const DitherSettings& settings) {
    auto width = static_cast<uint32_t>(source->width);
    GreyImage grey = {nullptr, source->width, source->height, RowBytes(width, 8)};
    OwnedMemory result(CreateImageBitmap(source->width, source->height, palette, 1));
    OwnedMemory greyMemory(AllocateMemory(uint64_t{grey.rowBytes} * static_cast<uint32_t>(grey.height)));
    OwnedMemory pixels(AllocateMemory(size_t{3} * width));
    MemoryLock resultLock(result.Get()), greyLock(greyMemory.Get()), pixelLock(pixels.Get());
    if (!resultLock || !greyLock || !pixelLock) return nullptr;
    auto* to = resultLock.As<BitmapHeader>();
    grey.pixels = greyLock.Bytes();
    FillGrey(source, pixelLock.Bytes(), &grey);

    const Levels levels = MakeLevels(settings);
    uint8_t* row = grey.pixels;
    for (int y = grey.height - 1; y >= 0; --y, row += grey.rowBytes) {
        if (StopRequested(flags)) return nullptr;
        uint8_t* bits = pixelLock.Bytes();
        DiffuseRow(grey, levels, row, y == 0, bits);
        PackRow(ImageRow(to, y), bits, grey.width, 1);
    }
    return result.Release();
}
