#include "gif/gif_header.h"

#include <cstring>

#include "gif/descriptor.h"
#include "gif/lzw_decoder.h"

namespace {

constexpr uint64_t kPrefixBytes = 128;

bool ReadSignature(File& file, Block* block) {
    return file.Read(block->descriptor, kHeaderDescriptorBytes) == kHeaderDescriptorBytes &&
           memcmp(block->descriptor, "GIF", 3) == 0;
}

// False when the table is cut short or there is no memory for it.
bool ReadColourTable(File& file, Block* block, uint8_t packed) {
    RgbTriples colours;
    auto count = static_cast<size_t>(ColoursOfPacked(packed));
    size_t bytes = count * sizeof(RgbTriple);
    return file.Read(colours, bytes) == bytes && block->palette.Set({colours, count});
}

}  // namespace

HeaderResult ReadGifHeader(File& file, Block* block) {
    block->kind = kHeaderBlock;
    if (!ReadSignature(file, block)) {
        file.Seek(kPrefixBytes);
        if (!ReadSignature(file, block)) return kHeaderNotGif;
    }
    uint8_t packed = GetHeaderFields(*block).packed;
    return !(packed & kHasPalette) || ReadColourTable(file, block, packed) ? kHeaderRead : kHeaderCut;
}

ImageResult ReadImage(File& file, Block* block, const GlobalPalette& global) {
    block->kind = kImageBlock;
    if (file.Read(block->descriptor, kImageDescriptorBytes) != kImageDescriptorBytes) return kImageFailed;
    ImageFields fields = GetImageFields(*block);
    bool hasOwnPalette = (fields.packed & kHasPalette) != 0;
    if (hasOwnPalette && !ReadColourTable(file, block, fields.packed)) return kImageFailed;
    int depth = hasOwnPalette ? DepthOfPacked(fields.packed) : global.depth;
    const Palette& palette = hasOwnPalette ? block->palette : global.colours;
    int codeSize = depth ? ReadByte(file) : -1;
    if (codeSize < 0) return kImageFailed;

    // The block remembers the depth of the colours that it is shown with, even when they are not its own.
    fields.packed = static_cast<uint8_t>((fields.packed & ~kSizeCode) | (depth - 1));
    PutImageFields(block, fields);
    block->data = CreateImageBitmap(fields.width, fields.height, palette, depth);
    if (!block->data) return kImageFailed;
    DecodeResult decoded = DecodeImageData(file, codeSize, block);
    if (decoded == kDecodeCorrupt) return kImageFailed;
    return decoded == kDecodeNoMemory ? kImageLeftBlank : kImageRead;
}
