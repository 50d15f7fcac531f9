#include "imaging/dib.h"

#include <cstring>

#include "imaging/picture_decoders.h"
#include "imaging/row_packer.h"

namespace {

// The longest header: what the usual one has, the masks of the channels, and the colour space.
struct LongHeader {
    BitmapHeader usual;
    uint32_t red, green, blue, opacity;
    uint32_t colourSpace;
    uint32_t endpoints[9], gamma[3];
    uint32_t intent;
    uint32_t profile[3];
};
static_assert(sizeof(LongHeader) == 124, "the layout of a BITMAPV5HEADER");

constexpr uint32_t kWithMasks = 3;             // the compression that is none, with masks
constexpr uint32_t kStandardRgb = 0x73524742;  // "sRGB"
constexpr uint32_t kPicture = 4;               // an intent: colours as the eye sees them
constexpr uint32_t kOpaque = 0xFF000000;

LongHeader HeaderWithOpacity(ConstLockedBitmap bitmap) {
    LongHeader header = {};
    header.usual.size = sizeof header;
    header.usual.width = bitmap->width;
    header.usual.height = bitmap->height;
    header.usual.planes = 1;
    header.usual.bitCount = 32;
    header.usual.compression = kWithMasks;
    header.red = 0xFF0000;
    header.green = 0xFF00;
    header.blue = 0xFF;
    header.opacity = kOpaque;
    header.colourSpace = kStandardRgb;
    header.intent = kPicture;
    return header;
}

}  // namespace

Result<Picture> ReadDib(std::span<const uint8_t> bytes) {
    Result<Picture> picture = Picture();
    const Failure failure = DecodeDib(bytes, &*picture);
    if (failure != Failure::kNone) return failure;
    return picture;
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

MemoryHandle MakeDibWithOpacity(const MemoryHandle& image, const RgbTriple* palette, int transparent, size_t* bytes) {
    const ImageLock bitmap(image);
    if (!bitmap || bitmap->bitCount > 8) return nullptr;
    const auto width = static_cast<uint32_t>(bitmap->width), height = static_cast<uint32_t>(bitmap->height);
    const uint64_t all = sizeof(LongHeader) + uint64_t{4} * width * height;
    if (all > kMaxImageBytes) return nullptr;
    *bytes = static_cast<size_t>(all);
    MemoryHandle dib = AllocateMemory(*bytes);
    WriteLock to(&dib);
    auto indexes = AllocateScratch(width);
    if (!to || !indexes) return nullptr;
    const LongHeader header = HeaderWithOpacity(bitmap);
    memcpy(to.Bytes(), &header, sizeof header);
    uint8_t* pixel = to.Bytes() + sizeof header;
    for (int y = bitmap->height - 1; y >= 0; --y) {
        UnpackRow(indexes.get(), ImageRow(bitmap, y), bitmap->width, bitmap->bitCount);
        for (uint32_t x = 0; x < width; ++x, pixel += 4) {
            const RgbTriple colour = palette[indexes[x]];
            const uint32_t opaque = kOpaque | uint32_t{colour.red} << 16 | uint32_t{colour.green} << 8 | colour.blue;
            const uint32_t value = indexes[x] == transparent ? 0 : opaque;
            memcpy(pixel, &value, sizeof value);
        }
    }
    return dib;
}
