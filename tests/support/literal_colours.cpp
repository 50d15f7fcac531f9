#include "tests/support/literal_colours.h"

#include <algorithm>
#include <cstring>

namespace {

struct Pixel {
    int red, green, blue;
};

int Grey(Pixel p) {
    return p.red * 30 / 100 + p.green * 59 / 100 + p.blue * 11 / 100;
}

Pixel ColourAt(ConstLockedBitmap bitmap, int x, int y) {
    uint32_t value = GetImagePixel(bitmap, x, y);
    if (bitmap->bitCount == 24)
        return {static_cast<int>(value & 255), static_cast<int>(value >> 8 & 255), static_cast<int>(value >> 16)};
    if (bitmap->bitCount == 1) return value ? Pixel{255, 255, 255} : Pixel{0, 0, 0};
    RgbQuad colour = ImageColourTable(bitmap)[value];
    return {colour.red, colour.green, colour.blue};
}

int Exact(Pixel p, const RgbTriple* palette, int depth) {
    for (int i = 0; i < (1 << depth); ++i)
        if (palette[i].red == p.red && palette[i].green == p.green && palette[i].blue == p.blue) return i;
    return -1;
}

size_t Cell(Pixel p) {
    return static_cast<size_t>((p.red >> 3) + (p.green >> 3) * 32 + (p.blue >> 3) * 1024);
}

int RemapPixel(ConstLockedBitmap source, int x, int y, const RgbTriple* palette, int depth,
               const std::vector<uint8_t>& table) {
    Pixel p = ColourAt(source, x, y);
    if (source->bitCount == 1 && depth == 1) return static_cast<int>(GetImagePixel(source, x, y));
    if (depth == 1) return Grey(p) >= 129;
    if (source->bitCount == 4 || source->bitCount == 8)
        return LiteralNearest(p.red, p.green, p.blue, palette, 1 << depth);
    int exact = Exact(p, palette, depth);
    return exact >= 0 ? exact : table[Cell(p)];
}

void DitherColours(ConstLockedBitmap from, LockedBitmap to, const RgbTriple* palette,
                   const std::vector<uint8_t>& table) {
    int width = from->width, height = from->height;
    std::vector<int16_t> current(static_cast<size_t>(width) * 3), next(current.size());
    auto give = [](std::vector<int16_t>& row, int x, int c, int share) {
        auto at = static_cast<size_t>(x * 3 + c);
        row[at] = static_cast<int16_t>(row[at] + share);
    };
    for (int y = 0; y < height; ++y) {  // stored rows, the bottom one first
        for (int x = 0; x < width; ++x) {
            Pixel p = ColourAt(from, x, height - 1 - y);
            give(current, x, 0, p.red);
            give(current, x, 1, p.green);
            give(current, x, 2, p.blue);
        }
        for (int x = 0; x < width; ++x) {
            int value[3];
            for (int c = 0; c < 3; ++c)
                value[c] = std::min(std::max<int>(current[static_cast<size_t>(x * 3 + c)], 0), 255);
            int index = table[Cell({value[0], value[1], value[2]})];
            SetImagePixel(to, x, height - 1 - y, static_cast<uint32_t>(index));
            int chosen[3] = {palette[index].red, palette[index].green, palette[index].blue};
            for (int c = 0; c < 3; ++c) {
                int error = value[c] - chosen[c];
                if (x + 1 < width) give(current, x + 1, c, error * 7 >> 4);
                if (x - 1 > 0 && y + 1 < height) give(next, x - 1, c, error * 3 >> 4);
                if (x + 1 < width && y + 1 < height) give(next, x + 1, c, error >> 4);
                if (y + 1 < height) give(next, x, c, error * 5 >> 4);
            }
        }
        current = next;
        std::fill(next.begin(), next.end(), int16_t{0});
    }
}

void DitherTwoColours(ConstLockedBitmap from, LockedBitmap to) {
    int width = from->width, height = from->height, rowBytes = (width + 3) / 4 * 4;
    std::vector<uint8_t> grey(static_cast<size_t>(rowBytes) * static_cast<size_t>(height));
    auto give = [&](int at, int share) {
        uint8_t& byte = grey[static_cast<size_t>(at)];
        byte = static_cast<uint8_t>(std::min(std::max(byte + share, 0), 255));
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
    volatile double step = 256.0 / (256 - 2 * 20), value = 20 - 20;  // volatile: rounded to double everywhere
    for (int& level : levels) {
        level = value >= 254 ? 254 : value < 1 ? 1 : static_cast<int>(value);
        value = value + step;
    }
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            int at = y * rowBytes + x;
            int v = levels[grey[static_cast<size_t>(at)]];
            bool set = v > (lightest + darkest) >> 1;
            SetImagePixel(to, x, height - 1 - y, set);
            int q = (v - (set ? lightest : darkest)) >> 4;
            if (y + 1 < height) {
                if (x + 1 < width) give(at + rowBytes + 1, q);
                if (x != 1) give(at + rowBytes - 1, 3 * q);
                give(at + rowBytes, 5 * q);
            }
            if (x + 1 < width) give(at + 1, 7 * q);
        }
}

}  // namespace

int LiteralNearest(int red, int green, int blue, const RgbTriple* palette, int count) {
    int best = 0, bestDistance = 1000000;
    for (int i = 0; i < count; ++i) {
        int r = red - palette[i].red, g = green - palette[i].green, b = blue - palette[i].blue;
        int distance = r * r + g * g + b * b;
        if (distance < bestDistance) {
            best = i;
            bestDistance = distance;
            if (distance == 0) break;
        }
    }
    return best;
}

std::vector<uint8_t> LiteralInverseTable(const RgbTriple* palette) {
    std::vector<uint8_t> table(32768);
    for (int c = 0; c < 32768; ++c)
        table[static_cast<size_t>(c)] =
            static_cast<uint8_t>(LiteralNearest((c & 31) * 8, (c >> 5 & 31) * 8, (c >> 10 & 31) * 8, palette, 256));
    return table;
}

MemoryHandle LiteralRemap(MemoryHandle source, const RgbTriple* palette, int depth, const std::vector<uint8_t>& table) {
    MemoryLock lock(source);
    auto* from = lock.As<const BitmapHeader>();
    MemoryHandle result = CreateImageBitmap(from->width, from->height, palette, depth);
    MemoryLock resultLock(result);
    for (int y = 0; y < from->height; ++y)
        for (int x = 0; x < from->width; ++x)
            SetImagePixel(resultLock.As<BitmapHeader>(), x, y,
                          static_cast<uint32_t>(RemapPixel(from, x, y, palette, depth, table)));
    return result;
}

MemoryHandle LiteralDither(MemoryHandle source, const RgbTriple* palette, int depth,
                           const std::vector<uint8_t>& table) {
    MemoryLock lock(source);
    auto* from = lock.As<const BitmapHeader>();
    if (from->bitCount == 1) return nullptr;
    MemoryHandle result = CreateImageBitmap(from->width, from->height, palette, depth);
    MemoryLock resultLock(result);
    auto* to = resultLock.As<BitmapHeader>();
    if (depth == 1)
        DitherTwoColours(from, to);
    else
        DitherColours(from, to, palette, table);
    return result;
}

MemoryHandle LiteralExpand(MemoryHandle source) {
    MemoryLock lock(source);
    auto* from = lock.As<const BitmapHeader>();
    MemoryHandle result = CreateImageBitmap(from->width, from->height, nullptr, 24);
    MemoryLock resultLock(result);
    for (int y = 0; y < from->height; ++y)
        for (int x = 0; x < from->width; ++x) {
            Pixel p = ColourAt(from, x, y);
            SetImagePixel(resultLock.As<BitmapHeader>(), x, y,
                          static_cast<uint32_t>(p.red | p.green << 8 | p.blue << 16));
        }
    return result;
}
