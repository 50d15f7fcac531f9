#include "imaging/image_bitmap.h"

#include <algorithm>

namespace {

// What GetImagePalette answers for a true-colour bitmap, which has no palette: its callers take 0 for a failure.
constexpr int kQuirkColoursOfTrueColour = 1;

constexpr uint32_t ColourTableEntries(int bitCount) {
    return bitCount <= 8 ? 1u << bitCount : 0;
}

bool IsInside(ConstLockedBitmap bitmap, int x, int y) {
    return x >= 0 && y >= 0 && x < bitmap->width && y < bitmap->height;
}

}  // namespace

int BitCountForDepth(int depth) {
    if (depth == 1) return 1;
    if (depth >= 2 && depth <= 4) return 4;
    if (depth >= 5 && depth <= 8) return 8;
    return 24;
}

MemoryHandle CreateImageBitmap(int width, int height, const RgbTriple* colours, int depth) {
    if (width < 0 || height < 0 || width > 0xFFFF || height > 0xFFFF) return nullptr;
    int bitCount = BitCountForDepth(depth);
    uint32_t entries = ColourTableEntries(bitCount);
    uint64_t imageBytes = uint64_t{RowBytes(static_cast<uint32_t>(width), static_cast<uint32_t>(bitCount))} *
                          static_cast<uint32_t>(height);
    if (imageBytes > kMaxImageBytes) return nullptr;

    MemoryHandle image = AllocateMemory(sizeof(BitmapHeader) + entries * sizeof(RgbQuad) + imageBytes);
    ImageWriteLock bitmap(&image);
    if (!bitmap) return nullptr;
    bitmap->size = sizeof(BitmapHeader);
    bitmap->width = width;
    bitmap->height = height;
    bitmap->planes = 1;
    bitmap->bitCount = static_cast<uint16_t>(bitCount);
    bitmap->imageBytes = static_cast<uint32_t>(imageBytes);
    bitmap->coloursUsed = bitmap->coloursImportant = entries;
    if (colours) SetImagePalette(bitmap, colours);
    return image;
}

std::optional<ImageInfo> GetImageInfo(const MemoryHandle& image) {
    ImageLock bitmap(image);
    if (!bitmap) return std::nullopt;
    return ImageInfo{bitmap->width, bitmap->height, bitmap->bitCount};
}

int GetImagePalette(ConstLockedBitmap bitmap, RgbTriple* palette) {
    if (bitmap->bitCount > 8) return kQuirkColoursOfTrueColour;
    int entries = static_cast<int>(ColourTableEntries(bitmap->bitCount));
    const RgbQuad* table = ImageColourTable(bitmap);
    for (int i = 0; i < entries; ++i) palette[i] = {table[i].red, table[i].green, table[i].blue};
    return entries;
}

void SetImagePalette(LockedBitmap bitmap, const RgbTriple* palette) {
    RgbQuad* table = ImageColourTable(bitmap);
    for (uint32_t i = 0; i < ColourTableEntries(bitmap->bitCount); ++i)
        table[i] = {palette[i].blue, palette[i].green, palette[i].red, 0};
}

uint32_t GetImagePixel(ConstLockedBitmap bitmap, int x, int y) {
    if (!IsInside(bitmap, x, y)) return kNoPixel;
    const uint8_t* row = ImageRow(bitmap, y);
    switch (bitmap->bitCount) {
        case 1:
        case 4:
        case 8: return IndexAt(row, x, bitmap->bitCount);
        case 24: row += ptrdiff_t{3} * x; return static_cast<uint32_t>(row[0] << 16 | row[1] << 8 | row[2]);
    }
    return kNoPixel;
}

void SetImagePixel(LockedBitmap bitmap, int x, int y, uint32_t value) {
    if (value == kNoPixel || !IsInside(bitmap, x, y)) return;
    uint8_t* row = ImageRow(bitmap, y);
    switch (bitmap->bitCount) {
        case 1: {
            int mask = 0x80 >> x % 8;
            row[x / 8] = static_cast<uint8_t>(value & 1 ? row[x / 8] | mask : row[x / 8] & ~mask);
            break;
        }
        case 4: {
            int shift = x % 2 ? 0 : 4;
            row[x / 2] = static_cast<uint8_t>((row[x / 2] & 0xF0 >> shift) | (value & 15) << shift);
            break;
        }
        case 8: row[x] = static_cast<uint8_t>(value); break;
        case 24:
            row += ptrdiff_t{3} * x;
            row[0] = static_cast<uint8_t>(value >> 16);
            row[1] = static_cast<uint8_t>(value >> 8);
            row[2] = static_cast<uint8_t>(value);
            break;
    }
}

const RgbQuad* ImageColourTable(ConstLockedBitmap bitmap) {
    return reinterpret_cast<const RgbQuad*>(bitmap + 1);
}

RgbQuad* ImageColourTable(LockedBitmap bitmap) {
    return const_cast<RgbQuad*>(ImageColourTable(static_cast<ConstLockedBitmap>(bitmap)));
}

const uint8_t* ImagePixels(ConstLockedBitmap bitmap) {
    return reinterpret_cast<const uint8_t*>(ImageColourTable(bitmap) + ColourTableEntries(bitmap->bitCount));
}

uint8_t* ImagePixels(LockedBitmap bitmap) {
    return const_cast<uint8_t*>(ImagePixels(static_cast<ConstLockedBitmap>(bitmap)));
}

uint32_t ImageRowBytes(ConstLockedBitmap bitmap) {
    return RowBytes(static_cast<uint32_t>(bitmap->width), bitmap->bitCount);
}

const uint8_t* ImageRow(ConstLockedBitmap bitmap, int y) {
    size_t offset = size_t{ImageRowBytes(bitmap)} * static_cast<size_t>(bitmap->height - y - 1);
    return &ImagePixels(bitmap)[offset];
}

uint8_t* ImageRow(LockedBitmap bitmap, int y) {
    return const_cast<uint8_t*>(ImageRow(static_cast<ConstLockedBitmap>(bitmap), y));
}
