#include "gif/gif_header.h"

#include <cstring>

#include "gif/descriptor.h"
#include "gif/lzw_decoder.h"

namespace {

// A file may carry so many bytes of something else before its signature.
constexpr uint64_t kQuirkPrefixBytes = 128;

// An image keeps the depth of the colours that it is shown with, even when they are not its own.
constexpr bool kQuirkSizeCodeOfGlobalPalette = true;

// One picture that can't be decoded, for its code size or for want of memory, does not cost the document.
constexpr bool kQuirkUndecodedImageStaysBlank = true;

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
        file.Seek(kQuirkPrefixBytes);
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

    if (hasOwnPalette || kQuirkSizeCodeOfGlobalPalette) fields.packed = WithDepth(fields.packed, depth);
    PutImageFields(block, fields);
    block->data = CreateImageBitmap(fields.width, fields.height, palette, depth);
    if (!block->data) return kImageFailed;
    DecodeResult decoded = DecodeImageData(file, codeSize, block);
    if (decoded == kDecodeCorrupt) return kImageFailed;
    if (decoded != kDecodeDone && !kQuirkUndecodedImageStaysBlank) return kImageFailed;
    return decoded == kDecodeNoMemory ? kImageLeftBlank : kImageRead;
}
