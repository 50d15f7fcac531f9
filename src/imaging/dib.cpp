#include "imaging/dib.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>

namespace {

constexpr uint32_t kPlain = 0, kWithMasks = 3;  // compressions: none, and none with masks of the channels
constexpr uint32_t kMasksBytes = 12;
constexpr int32_t kMostSide = 65535;

// The bits of a pixel that one channel has.
struct Channel {
    uint32_t mask = 0;

    uint8_t Of(uint32_t pixel) const {
        if (mask == 0) return 0;
        const int shift = std::countr_zero(mask);
        const uint64_t most = mask >> shift, value = (pixel & mask) >> shift;
        return static_cast<uint8_t>(value * 255 / most);
    }
};

struct Layout {
    BitmapHeader header = {};
    int width = 0, height = 0;
    bool isTopDown = false;
    Channel red, green, blue;
    size_t colours = 0;  // where the colour table starts, and how many it has
    uint32_t colourCount = 0;
    size_t pixels = 0, rowBytes = 0;
};

bool IsBitCount(uint16_t bits) {
    constexpr uint16_t kBitCounts[] = {1, 4, 8, 16, 24, 32};
    return std::ranges::find(kBitCounts, bits) != std::end(kBitCounts);
}

void SetUsualMasks(Layout* layout) {
    const bool isShort = layout->header.bitCount == 16;
    layout->red.mask = isShort ? 0x7C00 : 0xFF0000;
    layout->green.mask = isShort ? 0x3E0 : 0xFF00;
    layout->blue.mask = isShort ? 0x1F : 0xFF;
}

// Reads the masks, which stand in a long header or behind a short one. False when they are not there.
bool ReadMasks(std::span<const uint8_t> bytes, Layout* layout) {
    if (bytes.size() < sizeof(BitmapHeader) + kMasksBytes) return false;
    for (Channel* channel : {&layout->red, &layout->green, &layout->blue}) {
        const auto place = static_cast<size_t>(channel - &layout->red);
        memcpy(&channel->mask, &bytes[sizeof(BitmapHeader) + place * sizeof channel->mask], sizeof channel->mask);
    }
    return true;
}

// Finds the parts. False when they do not lie within the bytes.
bool FindParts(std::span<const uint8_t> bytes, Layout* layout) {
    BitmapHeader& header = layout->header;
    if (bytes.size() < sizeof header) return false;
    memcpy(&header, bytes.data(), sizeof header);
    if (header.size < sizeof header || header.size > bytes.size() || !IsBitCount(header.bitCount)) return false;
    layout->isTopDown = header.height < 0;
    if (header.width <= 0 || header.width > kMostSide || header.height == 0) return false;
    if (header.height < -kMostSide || header.height > kMostSide) return false;
    layout->width = header.width;
    layout->height = std::abs(header.height);
    const bool hasMasks = header.compression == kWithMasks;
    if (hasMasks && header.bitCount != 16 && header.bitCount != 32) return false;
    if (!hasMasks && header.compression != kPlain) return false;
    SetUsualMasks(layout);
    if (hasMasks && !ReadMasks(bytes, layout)) return false;
    uint64_t place = header.size;
    if (hasMasks && header.size == sizeof header) place += kMasksBytes;
    layout->colours = static_cast<size_t>(place);
    const bool isIndexed = header.bitCount <= 8;
    layout->colourCount = header.coloursUsed == 0 && isIndexed ? 1u << header.bitCount : header.coloursUsed;
    place += uint64_t{layout->colourCount} * sizeof(RgbQuad);
    layout->pixels = static_cast<size_t>(place);
    layout->rowBytes = RowBytes(static_cast<uint32_t>(layout->width), header.bitCount);
    return place + uint64_t{layout->rowBytes} * static_cast<uint32_t>(layout->height) <= bytes.size();
}

void ReadColours(std::span<const uint8_t> bytes, const Layout& layout, RgbTriples* colours) {
    const uint32_t count = std::min<uint32_t>(layout.colourCount, 1u << layout.header.bitCount);
    for (uint32_t i = 0; i < count; ++i) {
        const uint8_t* entry = &bytes[layout.colours + i * sizeof(RgbQuad)];
        (*colours)[i] = {entry[2], entry[1], entry[0]};
    }
}

void PutWideRow(const uint8_t* from, const Layout& layout, uint8_t* to) {
    const size_t pixelBytes = layout.header.bitCount / 8u;
    for (int x = 0; x < layout.width; ++x, from += pixelBytes, to += 3) {
        uint32_t pixel = 0;
        memcpy(&pixel, from, pixelBytes);
        to[0] = layout.blue.Of(pixel);
        to[1] = layout.green.Of(pixel);
        to[2] = layout.red.Of(pixel);
    }
}

// `y` counts from the top.
void PutRow(const uint8_t* from, const Layout& layout, int y, LockedBitmap bitmap) {
    if (layout.header.bitCount == 1) {
        for (int x = 0; x < layout.width; ++x) SetImagePixel(bitmap, x, y, IndexAt(from, x, 1));
    } else if (layout.header.bitCount > 8) {
        PutWideRow(from, layout, ImageRow(bitmap, y));
    } else {
        memcpy(ImageRow(bitmap, y), from, layout.rowBytes);
    }
}

}  // namespace

Result<MemoryHandle> ReadDib(std::span<const uint8_t> bytes) {
    Layout layout;
    if (!FindParts(bytes, &layout)) return Failure::kDamaged;
    RgbTriples colours = {};
    const bool isIndexed = layout.header.bitCount <= 8;
    if (isIndexed) ReadColours(bytes, layout, &colours);
    constexpr int kLeastDepth = 4, kTrueColour = 24;
    const int depth = isIndexed ? std::max<int>(layout.header.bitCount, kLeastDepth) : kTrueColour;
    MemoryHandle image = CreateImageBitmap(layout.width, layout.height, isIndexed ? colours : nullptr, depth);
    ImageWriteLock bitmap(&image);
    if (!bitmap) return Failure::kNoMemory;
    for (int row = 0; row < layout.height; ++row) {
        const int y = layout.isTopDown ? row : layout.height - 1 - row;
        PutRow(&bytes[layout.pixels + static_cast<size_t>(row) * layout.rowBytes], layout, y, bitmap);
    }
    return image;
}

MemoryHandle MakeDib(MemoryHandle image, const RgbTriple* palette, size_t* bytes) {
    ImageWriteLock bitmap(&image);
    if (!bitmap) return nullptr;
    SetImagePalette(bitmap, palette);
    const auto* start = reinterpret_cast<const uint8_t*>(static_cast<LockedBitmap>(bitmap));
    *bytes = static_cast<size_t>(ImagePixels(bitmap) - start) +
             size_t{ImageRowBytes(bitmap)} * static_cast<size_t>(static_cast<LockedBitmap>(bitmap)->height);
    return image;
}
