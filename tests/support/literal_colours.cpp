#include "tests/support/literal_colours.h"

#include <algorithm>
#include <array>

#include "imaging/dither.h"

namespace {

using Colour = std::array<int, 3>;  // red, green, blue
using Table = std::vector<uint8_t>;

int Grey(Colour c) {
    return c[0] * 30 / 100 + c[1] * 59 / 100 + c[2] * 11 / 100;
}

Colour ColourAt(ConstLockedBitmap bitmap, int x, int y) {
    uint32_t value = GetImagePixel(bitmap, x, y);
    if (bitmap->bitCount == 1) value *= 0xFFFFFF;
    if (bitmap->bitCount == 4 || bitmap->bitCount == 8) {
        RgbQuad colour = ImageColourTable(bitmap)[value];
        return {colour.red, colour.green, colour.blue};
    }
    return {static_cast<int>(value & 255), static_cast<int>(value >> 8 & 255), static_cast<int>(value >> 16)};
}

size_t CellOf(Colour c) {
    return static_cast<size_t>((c[0] >> 3) + (c[1] >> 3) * 32 + (c[2] >> 3) * 1024);
}

int RemapPixel(ConstLockedBitmap source, int x, int y, const RgbTriple* palette, int depth, const Table& table) {
    Colour c = ColourAt(source, x, y);
    if (depth == 1) return Grey(c) >= 129;
    if (source->bitCount == 4 || source->bitCount == 8) return LiteralNearest(c[0], c[1], c[2], palette, 1 << depth);
    for (int i = 0; i < 1 << depth; ++i)
        if (Colour{palette[i].red, palette[i].green, palette[i].blue} == c) return i;
    return table[CellOf(c)];
}

// `y` counts stored rows, the bottom one first. Shares beyond the last column and row fall on nobody.
void DitherColours(ConstLockedBitmap from, LockedBitmap to, const RgbTriple* palette, const Table& table) {
    std::vector<Colour> current(static_cast<size_t>(from->width) + 1), next(current);
    for (int y = 0; y < from->height; ++y) {
        for (int x = 0; x < from->width; ++x) {
            const auto at = static_cast<size_t>(x);
            Colour wanted = ColourAt(from, x, from->height - 1 - y);
            for (size_t c = 0; c < 3; ++c) wanted[c] = std::clamp(wanted[c] + current[at][c], 0, 255);
            const uint8_t index = table[CellOf(wanted)];
            SetImagePixel(to, x, from->height - 1 - y, index);
            const Colour chosen = {palette[index].red, palette[index].green, palette[index].blue};
            for (size_t c = 0; c < 3; ++c) {
                int error = wanted[c] - chosen[c];
                current[at + 1][c] += error * 7 >> 4;
                if (x - 1 > 0) next[at - 1][c] += error * 3 >> 4;
                next[at][c] += error * 5 >> 4;
                next[at + 1][c] += error >> 4;
            }
        }
        current = next;
        std::fill(next.begin(), next.end(), Colour{});
    }
}

void DitherTwoColours(ConstLockedBitmap from, LockedBitmap to) {
    const int width = from->width, height = from->height, rowBytes = (width + 3) / 4 * 4;
    std::vector<uint8_t> grey(static_cast<size_t>(rowBytes) * static_cast<size_t>(height));
    auto give = [&](int at, int share) {
        uint8_t& byte = grey[static_cast<size_t>(at)];
        byte = static_cast<uint8_t>(std::clamp(byte + share, 0, 255));
    };
    int darkest = 255, lightest = 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            int value = Grey(ColourAt(from, x, height - 1 - y));
            give(y * rowBytes + x, value);
            darkest = std::min(darkest, value);
            lightest = std::max(lightest, value);
        }
    int levels[256];
    const auto [brightness, contrast] = ditherSettings;  // in range
    volatile double step = 256.0 / (256 - 2 * contrast),
                    value = brightness - contrast;  // volatile: rounded to double everywhere
    for (int& level : levels) {
        level = std::clamp(static_cast<int>(value), 1, 254);
        value = value + step;
    }
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const int at = y * rowBytes + x, level = levels[grey[static_cast<size_t>(at)]];
            const bool set = level > (lightest + darkest) >> 1;
            SetImagePixel(to, x, height - 1 - y, set);
            const int share = (level - (set ? lightest : darkest)) >> 4;
            if (x + 1 < width) give(at + 1, 7 * share);
            if (y + 1 == height) continue;
            if (x + 1 < width) give(at + rowBytes + 1, share);
            if (x != 1) give(at + rowBytes - 1, 3 * share);
            give(at + rowBytes, 5 * share);
        }
}

// An image of the size of `source`, which `fill(from, to)` completes.
template <typename Fill>
MemoryHandle MakeFrom(const MemoryHandle& source, const RgbTriple* palette, int depth, Fill fill) {
    ImageLock from(source);
    MemoryHandle result = CreateImageBitmap(from->width, from->height, palette, depth);
    fill(from, ImageWriteLock(&result));
    return result;
}

// The same from `pixel(from, x, y)`.
template <typename Pixel>
MemoryHandle MakePixels(const MemoryHandle& source, const RgbTriple* palette, int depth, Pixel pixel) {
    return MakeFrom(source, palette, depth, [&](ConstLockedBitmap from, LockedBitmap to) {
        for (int y = 0; y < from->height; ++y)
            for (int x = 0; x < from->width; ++x) SetImagePixel(to, x, y, pixel(from, x, y));
    });
}

}  // namespace

int LiteralNearest(int red, int green, int blue, const RgbTriple* palette, int count) {
    int best = 0, bestDistance = 1000000;
    for (int i = 0; i < count; ++i) {
        int r = red - palette[i].red, g = green - palette[i].green, b = blue - palette[i].blue;
        int distance = r * r + g * g + b * b;
        if (distance < bestDistance) best = i;
        bestDistance = std::min(distance, bestDistance);
    }
    return best;
}

std::vector<uint8_t> LiteralInverseTable(const RgbTriple* palette) {
    Table table;
    for (int c = 0; c < 32768; ++c)
        table.push_back(
            static_cast<uint8_t>(LiteralNearest((c & 31) * 8, (c >> 5 & 31) * 8, (c >> 10 & 31) * 8, palette, 256)));
    return table;
}

MemoryHandle LiteralRemap(const MemoryHandle& source, const RgbTriple* palette, int depth, const Table& table) {
    return MakePixels(source, palette, depth, [&](ConstLockedBitmap from, int x, int y) {
        return static_cast<uint32_t>(RemapPixel(from, x, y, palette, depth, table));
    });
}

MemoryHandle LiteralDither(const MemoryHandle& source, const RgbTriple* palette, int depth, const Table& table) {
    if (GetImageInfo(source)->bitCount == 1) return nullptr;
    return MakeFrom(source, palette, depth, [&](ConstLockedBitmap from, LockedBitmap to) {
        depth == 1 ? DitherTwoColours(from, to) : DitherColours(from, to, palette, table);
    });
}

MemoryHandle LiteralExpand(const MemoryHandle& source) {
    return MakePixels(source, nullptr, 24, [](ConstLockedBitmap from, int x, int y) {
        Colour c = ColourAt(from, x, y);
        return static_cast<uint32_t>(c[0] | c[1] << 8 | c[2] << 16);
    });
}
