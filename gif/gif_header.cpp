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

bool ReadColourTable(File& file, Block* block, uint8_t packed) {
    auto bytes = 3 * static_cast<size_t>(ColoursOfPacked(packed));
    return file.Read(block->palette, bytes) == bytes;
}

// The depth of the palette that the image uses, put into `block`; 0 when there is none or it is cut short.
int ReadPalette(File& file, Block* block, uint8_t packed, const RgbTriple* globalPalette, int globalDepth) {
    if (packed & kHasPalette) return ReadColourTable(file, block, packed) ? DepthOfPacked(packed) : 0;
    if (globalDepth) memcpy(block->palette, globalPalette, kPaletteBytes);
    return globalDepth;
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

ImageResult ReadImage(File& file, Block* block, const RgbTriple* globalPalette, int globalDepth) {
    block->kind = kImageBlock;
    if (file.Read(block->descriptor, kImageDescriptorBytes) != kImageDescriptorBytes) return kImageFailed;
    ImageFields fields = GetImageFields(*block);
    bool hasOwnPalette = (fields.packed & kHasPalette) != 0;
    int depth = ReadPalette(file, block, fields.packed, globalPalette, globalDepth);
    int codeSize = depth ? ReadByte(file) : -1;
    if (codeSize < 0) return kImageFailed;

    // The block remembers the depth of the colours that it is shown with, even when they are not its own.
    fields.packed = static_cast<uint8_t>((fields.packed & ~kSizeCode) | (depth - 1));
    PutImageFields(block, fields);
    block->data = CreateImageBitmap(fields.width, fields.height, block->palette, depth);
    if (!block->data) return kImageFailed;
    DecodeResult decoded = DecodeImageData(file, codeSize, *block);
    if (decoded == kDecodeCorrupt) return kImageFailed;
    if (!hasOwnPalette) memset(block->palette, 0, kPaletteBytes);
    return decoded == kDecodeNoMemory ? kImageLeftBlank : kImageRead;
}
