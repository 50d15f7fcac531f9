#include "tests/support/png_reading.h"

#include "platform/checksum.h"

namespace {

constexpr size_t kPngSignatureBytes = 8, kColourTypeOffset = 25;

uint32_t BigNumber(const uint8_t* from) {
    return uint32_t{from[0]} << 24 | uint32_t{from[1]} << 16 | uint32_t{from[2]} << 8 | from[3];
}

PngForm FormOf(uint8_t colourType) {
    return colourType == 3 ? PngForm::kIndexed : colourType == 2 ? PngForm::kOpaque : PngForm::kFull;
}

}  // namespace

std::vector<PngChunk> ChunksOf(std::span<const uint8_t> png) {
    std::vector<PngChunk> chunks;
    for (size_t at = kPngSignatureBytes; at + 12 <= png.size();) {
        const uint32_t length = BigNumber(&png[at]);
        if (length > png.size() - at - 12) break;
        const std::span<const uint8_t> data = png.subspan(at + 8, length);
        chunks.push_back(
            {std::string(png.begin() + static_cast<ptrdiff_t>(at) + 4, png.begin() + static_cast<ptrdiff_t>(at) + 8),
             Bytes(data.begin(), data.end()), BigNumber(&png[at + 8 + length]),
             Crc32(png.subspan(at + 4, length + 4))});
        at += length + 12;
    }
    return chunks;
}

ReadPng::ReadPng(std::span<const uint8_t> png) {
    if (png.size() <= kColourTypeOffset || !Decode(png)) {
        pixels.clear();
        return;
    }
    form = FormOf(png[kColourTypeOffset]);
    for (uint32_t& pixel : pixels)
        if (reinterpret_cast<const uint8_t*>(&pixel)[3] == 0) pixel = 0;
}
