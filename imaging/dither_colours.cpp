#include "imaging/dither_colours.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "imaging/inverse_colour_table.h"
#include "imaging/pixel_rows.h"
#include "imaging/row_packer.h"
#include "imaging/user_abort.h"

namespace {

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
            // Column 0 gets no error from its right neighbour: images have always come out like this.
            if (x > 1) next[c - 3] = static_cast<int16_t>(next[c - 3] + (error * 3 >> 4));
        }
    }
}

}  // namespace

MemoryHandle DitherToColours(ConstLockedBitmap source, const RgbTriple* palette, int depth, unsigned flags) {
    Diffusion diffusion;
    if (!diffusion.nearest.Build(palette, flags)) return nullptr;
    for (int i = 0; i < kPaletteEntries; ++i)
        diffusion.colours[i] = {{palette[i].blue, palette[i].green, palette[i].red}};

    auto width = static_cast<size_t>(source->width);
    size_t errorBytes = (width + 1) * 3 * sizeof(int16_t);
    OwnedMemory result(CreateImageBitmap(source->width, source->height, palette, depth));
    OwnedMemory errors(AllocateMemory(2 * errorBytes));
    OwnedMemory pixels(AllocateMemory(width * 4));
    MemoryLock resultLock(result.Get()), errorLock(errors.Get()), pixelLock(pixels.Get());
    if (!resultLock || !errorLock || !pixelLock) return nullptr;
    auto* to = resultLock.As<BitmapHeader>();
    auto* current = errorLock.As<int16_t>();
    int16_t* next = current + errorBytes / sizeof(int16_t);
    uint8_t* bgr = pixelLock.Bytes();
    uint8_t* indexes = bgr + 3 * width;

    const TrueColours colours = GetTrueColours(source);
    for (int y = source->height - 1; y >= 0; --y) {  // the stored rows in their order: upwards
        if (StopRequested(flags)) return nullptr;
        ExpandRow(ImageRow(source, y), source->width, source->bitCount, colours, bgr);
        memset(next, 0, errorBytes);
        DiffuseRow(diffusion, bgr, source->width, current, next, indexes);
        PackRow(ImageRow(to, y), indexes, source->width, to->bitCount);
        std::swap(current, next);
    }
    return result.Release();
}
