#include "imaging/dither.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "imaging/inverse_colour_table.h"
#include "imaging/luminance.h"
#include "imaging/pixel_rows.h"
#include "imaging/row_packer.h"

DitherSettings ditherSettings;

namespace {

// This column hands no error down to the left, to column 0: images have always come out like this.
constexpr int kQuirkColumnWithoutLeftShare = 1;

// In two colours, column 0 hands its lower left share to the byte before the next row. When the width is a multiple of
// 4 this is the last pixel of the row itself, otherwise padding.
constexpr bool kQuirkShareBeforeNextRow = true;

// To more than two colours.

// Channels are kept in the order of the pixels: blue, green, red.
struct Colour {
    int channel[3];
};

struct Diffusion {
    InverseColourTable nearest;
    Colour colours[kPaletteEntries];
};

// Dithers a row of `width` pixels. `current` holds the errors that the row before left to this one; `next`, all zero,
// receives those for the row after. Both have 3 values a pixel and room for one pixel more. They stay within 16 bits:
// no pixel is given more than all of one error, which is less than 256.
void DiffuseRow(const Diffusion& diffusion, const uint8_t* bgr, int width, const int16_t* current, int16_t* next,
                uint8_t* indexes) {
    Colour carried = {};  // what the pixel to the left hands over
    for (int x = 0; x < width; ++x, bgr += 3, current += 3, next += 3) {
        Colour wanted;
        for (int c = 0; c < 3; ++c) wanted.channel[c] = std::clamp(bgr[c] + current[c] + carried.channel[c], 0, 255);
        auto blue = static_cast<uint32_t>(wanted.channel[0]), green = static_cast<uint32_t>(wanted.channel[1]),
             red = static_cast<uint32_t>(wanted.channel[2]);
        indexes[x] = diffusion.nearest.cells[InverseCell(red, green, blue)];
        const Colour& chosen = diffusion.colours[indexes[x]];
        for (int c = 0; c < 3; ++c) {
            int error = wanted.channel[c] - chosen.channel[c];
            carried.channel[c] = error * 7 >> 4;
            next[c] = static_cast<int16_t>(next[c] + (error * 5 >> 4));
            next[c + 3] = static_cast<int16_t>(error >> 4);  // nothing has been left there yet
            if (x > kQuirkColumnWithoutLeftShare) next[c - 3] = static_cast<int16_t>(next[c - 3] + (error * 3 >> 4));
        }
    }
}

Result<MemoryHandle> DitherToColours(ConstLockedBitmap source, const RgbTriple* palette, int depth,
                                     StopQuestion* stop) {
    Diffusion diffusion;
    if (!diffusion.nearest.Build(palette, stop)) return Failure::kStopped;
    for (int i = 0; i < kPaletteEntries; ++i)
        diffusion.colours[i] = {{palette[i].blue, palette[i].green, palette[i].red}};

    auto width = static_cast<size_t>(source->width);
    size_t errorCount = (width + 1) * 3;
    MemoryHandle result = CreateImageBitmap(source->width, source->height, palette, depth);
    auto errors = AllocateScratchArray<int16_t>(2 * errorCount);
    auto pixels = AllocateScratch(width * 4);
    ImageWriteLock to(&result);
    if (!to || !errors || !pixels) return Failure::kNoMemory;
    int16_t* current = errors.get();
    int16_t* next = current + errorCount;
    uint8_t* bgr = pixels.get();
    uint8_t* indexes = bgr + 3 * width;

    const TrueColours colours = GetTrueColours(source);
    for (int y = source->height - 1; y >= 0; --y) {  // the stored rows in their order: upwards
        if (StopRequested(stop)) return Failure::kStopped;
        ExpandRow(ImageRow(source, y), source->width, source->bitCount, colours, bgr);
        std::fill_n(next, errorCount, int16_t{0});
        DiffuseRow(diffusion, bgr, source->width, current, next, indexes);
        PackRow(ImageRow(to, y), indexes, source->width, to->bitCount);
        std::swap(current, next);
    }
    return result;
}

// To black and white.

using Levels = std::array<uint8_t, 256>;

// Stretches the scale of greys. With the usual settings its ends, 20 levels each, are given to full black and white.
// Sums fall just short of whole numbers there (entry 27 is 31, not 32), so more precision would change images; volatile
// makes compilers for 32 bits, which keep sums in wider registers, round each to a double.
Levels MakeLevels() {
    int contrast = std::clamp(ditherSettings.contrast, 0, 127);
    volatile double step = 256.0 / (256 - 2 * contrast);
    volatile double value = std::clamp(ditherSettings.brightness, 0, 255) - contrast;
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
void Spread(const GreyImage& grey, uint8_t* pixel, int x, bool lastRow, int share) {
    bool lastColumn = x + 1 == grey.width;
    if (!lastColumn) Give(pixel + 1, 7 * share);
    if (lastRow) return;
    uint8_t* below = pixel + grey.rowBytes;
    if (!lastColumn) Give(below + 1, share);
    if (x != kQuirkColumnWithoutLeftShare && (x > 0 || kQuirkShareBeforeNextRow)) Give(below - 1, 3 * share);
    Give(below, 5 * share);
}

void DiffuseGreyRow(const GreyImage& grey, const Levels& levels, uint8_t* row, bool lastRow, uint8_t* bits) {
    int threshold = (grey.lightest + grey.darkest) >> 1;
    for (int x = 0; x < grey.width; ++x) {
        int level = levels[row[x]];
        bits[x] = level > threshold;
        int error = level - (bits[x] ? grey.lightest : grey.darkest);
        Spread(grey, row + x, x, lastRow, error >> 4);
    }
}

Result<MemoryHandle> DitherToTwoColours(ConstLockedBitmap source, const RgbTriple* palette, StopQuestion* stop) {
    auto width = static_cast<uint32_t>(source->width);
    GreyImage grey = {nullptr, source->width, source->height, RowBytes(width, 8)};
    MemoryHandle result = CreateImageBitmap(source->width, source->height, palette, 1);
    auto greyPixels = AllocateScratchArray<uint8_t>(uint64_t{grey.rowBytes} * static_cast<uint32_t>(grey.height));
    auto pixels = AllocateScratch(size_t{3} * width);
    ImageWriteLock to(&result);
    if (!to || !greyPixels || !pixels) return Failure::kNoMemory;
    grey.pixels = greyPixels.get();
    FillGrey(source, pixels.get(), &grey);

    const Levels levels = MakeLevels();
    uint8_t* row = grey.pixels;
    for (int y = grey.height - 1; y >= 0; --y, row += grey.rowBytes) {
        if (StopRequested(stop)) return Failure::kStopped;
        DiffuseGreyRow(grey, levels, row, y == 0, pixels.get());
        PackRow(ImageRow(to, y), pixels.get(), grey.width, 1);
    }
    return result;
}

}  // namespace

Result<MemoryHandle> DitherImage(const MemoryHandle& source, const RgbTriple* palette, int depth, StopQuestion* stop) {
    ImageLock from(source);
    if (!from || depth < 1 || depth > 8 || from->bitCount == 1) return Failure::kNoMemory;
    return depth == 1 ? DitherToTwoColours(from, palette, stop) : DitherToColours(from, palette, depth, stop);
}
