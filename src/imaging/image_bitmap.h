// The pixels of one image: a device-independent bitmap in one memory block (header, colour table, pixel rows).
//
//   header        40 bytes, laid out as a BITMAPINFOHEADER
//   colour table  4 bytes (blue, green, red, 0) for each of 1 << bitCount colours; none at 24 bits
//   pixels        rows bottom-up (the last image row first), each padded to a multiple of 4 bytes
//
// Pixels are 1 bit (leftmost pixel in the most significant bit), 4 bits (even x in the high nibble), 8 bits, or 24 bits
// (blue, green, red bytes).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/memory.h"

struct RgbTriple {
    uint8_t red, green, blue;
};
inline bool operator==(RgbTriple a, RgbTriple b) {
    return a.red == b.red && a.green == b.green && a.blue == b.blue;
}
inline bool operator!=(RgbTriple a, RgbTriple b) {
    return !(a == b);
}

constexpr int kPaletteEntries = 256;
constexpr int kPaletteBytes = 768;
using RgbTriples = RgbTriple[kPaletteEntries];  // a whole palette; `palette` fields and buffers have this layout
static_assert(sizeof(RgbTriples) == kPaletteBytes, "three bytes an entry, nothing between");

struct BitmapHeader {
    uint32_t size;  // 40
    int32_t width, height;
    uint16_t planes, bitCount;
    uint32_t compression, imageBytes;
    int32_t xPelsPerMetre, yPelsPerMetre;
    uint32_t coloursUsed, coloursImportant;
};
static_assert(sizeof(BitmapHeader) == 40, "the layout of a BITMAPINFOHEADER");

struct RgbQuad {
    uint8_t blue, green, red, reserved;
};

// A locked bitmap is passed around as a pointer to its header.
using LockedBitmap = BitmapHeader*;
using ConstLockedBitmap = const BitmapHeader*;

// Locks a bitmap for the length of a scope, to be read; null when it can't be locked and for no bitmap.
class ImageLock {
public:
    explicit ImageLock(const MemoryHandle& image) : lock_(image) {}
    operator ConstLockedBitmap() const { return lock_.As<BitmapHeader>(); }
    ConstLockedBitmap operator->() const { return *this; }

private:
    MemoryLock lock_;
};

// The same, to be written. A bitmap that others share is copied first, and `*image` is the copy then.
class ImageWriteLock {
public:
    explicit ImageWriteLock(MemoryHandle* image) : lock_(image) {}
    operator LockedBitmap() const { return lock_.As<BitmapHeader>(); }
    LockedBitmap operator->() const { return *this; }

private:
    WriteLock lock_;
};

constexpr uint32_t kNoPixel = 0xFFFFFFFF;  // GetImagePixel outside the image

// More pixel bytes than this are refused: one image may not ask for more memory than any screen could show.
constexpr uint64_t kMaxImageBytes = uint64_t{1} << 30;

// Bits per pixel of a bitmap that holds colours of `depth` bits: 1; 4 for 2 to 4; 8 for 5 to 8; 24 for all others.
int BitCountForDepth(int depth);

// Bytes of a pixel row of `width` pixels: a multiple of 4. The result fits 32 bits for widths up to 65535 at 24 bits.
constexpr uint32_t RowBytes(uint32_t width, uint32_t bitCount) {
    return (width * bitCount + 31) / 32 * 4;
}

// Makes a bitmap of `width` x `height` pixels (0 to 65535 each), all of index 0, for colours of `depth` bits
// (1 to 8, anything else gives 24 bits per pixel). `colours` fills the colour table and must then hold as many entries
// as the table, at most 256; null leaves it black. None when the image is too large or memory has run out.
[[nodiscard]] MemoryHandle CreateImageBitmap(int width, int height, const RgbTriple* colours, int depth);

struct ImageInfo {
    int width, height;
    int bitCount;  // 1, 4, 8 or 24
};

// Size and bits per pixel of a bitmap; nothing when it can't be locked.
std::optional<ImageInfo> GetImageInfo(const MemoryHandle& image);

// Copies the colour table (2, 16 or 256 entries) into `palette`, which has room for 256, and returns how many there
// are. A 24-bit bitmap has none: nothing is copied and the result is 1, so that callers can take 0 for a failure.
int GetImagePalette(ConstLockedBitmap bitmap, RgbTriple* palette);

// Fills the colour table from `palette`, which has as many entries as the table. A 24-bit bitmap has none.
void SetImagePalette(LockedBitmap bitmap, const RgbTriple* palette);

// The index at column x of a stored row of 1, 4 or 8 bits a pixel.
inline uint8_t IndexAt(const uint8_t* row, int x, int bitCount) {
    switch (bitCount) {
        case 1: return row[x / 8] >> (7 - x % 8) & 1;
        case 4: return x % 2 ? row[x / 2] & 15 : row[x / 2] >> 4;
        default: return row[x];
    }
}

// The pixel at column x, image row y (0 is the top): an index, or the colour 0x00BBGGRR of a 24-bit pixel.
// kNoPixel when x or y lies outside or the bit count is unknown.
uint32_t GetImagePixel(ConstLockedBitmap bitmap, int x, int y);

// Sets the pixel at column x, image row y. Nothing happens for kNoPixel or a place outside.
void SetImagePixel(LockedBitmap bitmap, int x, int y, uint32_t value);

// The colour table and the stored rows of a locked bitmap. Row `y` counts from the top of the image.
RgbQuad* ImageColourTable(LockedBitmap bitmap);
const RgbQuad* ImageColourTable(ConstLockedBitmap bitmap);
uint8_t* ImagePixels(LockedBitmap bitmap);  // the first stored row: the bottom one
const uint8_t* ImagePixels(ConstLockedBitmap bitmap);
uint8_t* ImageRow(LockedBitmap bitmap, int y);
const uint8_t* ImageRow(ConstLockedBitmap bitmap, int y);
uint32_t ImageRowBytes(ConstLockedBitmap bitmap);
