#include "imaging/picture_reader.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "imaging/file_signature.h"
#include "imaging/jpeg_markers.h"
#include "imaging/picture_decoders.h"
#include "platform/bytes.h"

namespace {

constexpr std::string_view kJpegSignature = "\xFF\xD8\xFF";
constexpr std::string_view kBmpSignature = "BM";
constexpr size_t kBmpInfoSizeAt = 14;
constexpr unsigned kLargestBmpInfo = 124;

// Two letters alone would make a picture of many a text.
bool IsBmp(std::span<const uint8_t> start) {
    return StartsWith(start, kBmpSignature) && start.size() >= kBmpInfoSizeAt + 4 &&
           GetDoubleWord(&start[kBmpInfoSizeAt]) <= kLargestBmpInfo;
}

// Whether the chunks of a PNG file reach to the one that ends it. What decodes a file that does not shows what is there
// on one system and nothing on another.
bool HasEndChunk(std::span<const uint8_t> file) {
    constexpr size_t kAround = 12;  // its length, its type and its check sum
    for (size_t at = kPngSignature.size(); file.size() - at >= kAround;) {
        const uint32_t length = GetBigDoubleWord(&file[at]);
        if (StartsWith(file.subspan(at + 4), "IEND")) return true;
        if (length > file.size() - at - kAround) return false;
        at += kAround + length;
    }
    return false;
}

Failure ReadPng(std::span<const uint8_t> file, Picture* picture) {
    constexpr size_t kWidthAt = 16, kHeightAt = 20;  // in the first chunk
    if (file.size() < kHeightAt + 4 || !StartsWith(file.subspan(kWidthAt - 4), "IHDR") || !HasEndChunk(file))
        return Failure::kDamaged;
    const Failure failure = CheckSize(GetBigDoubleWord(&file[kWidthAt]), GetBigDoubleWord(&file[kHeightAt]));
    return failure == Failure::kNone ? DecodePng(file, picture) : failure;
}

Failure ReadJpeg(std::span<const uint8_t> file, Picture* picture) {
    const std::optional<JpegSize> size = SizeOfJpeg(file);
    if (!size || !HasEndMarker(file)) return Failure::kDamaged;
    const Failure failure = CheckSize(size->width, size->height);
    return failure == Failure::kNone ? DecodeJpeg(file, picture) : failure;
}

// Sizes are looked at before a decoder sees them: some take the memory for a picture as soon as they open it.
Failure Decode(std::span<const uint8_t> file, Picture* picture) {
    switch (KindOfPicture(file)) {
        case PictureKind::kPng: return ReadPng(file, picture);
        case PictureKind::kJpeg: return ReadJpeg(file, picture);
        case PictureKind::kBmp: return DecodeBmp(file, picture);
        default: return Failure::kNotPicture;
    }
}

}  // namespace

PictureKind KindOfPicture(std::span<const uint8_t> start) {
    if (StartsWith(start, kPngSignature)) return PictureKind::kPng;
    if (StartsWith(start, kJpegSignature)) return PictureKind::kJpeg;
    return IsBmp(start) ? PictureKind::kBmp : PictureKind::kOther;
}

Result<Picture> ReadPicture(std::span<const uint8_t> file) {
    Result<Picture> picture = Picture();
    const Failure failure = Decode(file, &*picture);
    if (failure != Failure::kNone) return failure;
    if (KindOfPicture(file) == PictureKind::kJpeg && !PutUpright(&*picture, JpegOrientation(file)))
        return Failure::kNoMemory;
    return picture;
}

void RgbaFromInks(const uint8_t* inks, size_t count, uint8_t* rgba) {
    for (; count > 0; --count, inks += 4, rgba += 4) {
        const int light = 255 - inks[3];
        for (int i = 0; i < 3; ++i) rgba[i] = static_cast<uint8_t>(((255 - inks[i]) * light + 127) / 255);
        rgba[3] = 255;
    }
}
