#include "gif/block_writers.h"

#include <cstring>

#include "gif/descriptor.h"
#include "gif/lzw_encoder.h"

namespace {

// A text that ends with a full sub-block, or has none, is ended twice: by an empty rest and by the terminator. Our
// reader takes the second zero for the end of the file.
constexpr bool kQuirkFullTextEndsTwice = true;

// Texts that are not there make no block.
constexpr bool kQuirkDatalessBlocksDropped = true;

// The text in sub-blocks of 255 bytes, a last one of what is left, and the terminator: one in the whole manner.
bool WriteSubBlocks(File& file, const uint8_t* text, uint32_t left, Manner manner) {
    for (; left >= kMostSubBlockBytes; left -= kMostSubBlockBytes, text += kMostSubBlockBytes)
        if (WriteByte(file, kMostSubBlockBytes) < 0 || !file.Write(text, kMostSubBlockBytes)) return false;
    if (left > 0 || (kQuirkFullTextEndsTwice && manner == Manner::kClassic))
        if (WriteByte(file, static_cast<int>(left)) < 0 || !file.Write(text, left)) return false;
    return WriteByte(file, 0) >= 0;
}

// The introducer, the label and the fixed part of an extension.
bool WriteExtension(File& file, int label, const uint8_t* fixed, size_t fixedBytes) {
    return WriteByte(file, kExtensionIntroducer) >= 0 && WriteByte(file, label) >= 0 && file.Write(fixed, fixedBytes);
}

bool WriteTextExtension(File& file, int label, const Block& block, size_t fixedBytes, Manner manner) {
    if (kQuirkDatalessBlocksDropped && !block.data && manner == Manner::kClassic) return true;
    MemoryLock lock(block.data);
    if (block.data && !lock) return false;
    return WriteExtension(file, label, block.descriptor, fixedBytes) &&
           WriteSubBlocks(file, lock.Bytes(), lock ? block.dataLength : 0, manner);
}

}  // namespace

bool WritePalette(File& file, const Block& block, uint8_t packed) {
    if (!(packed & kHasPalette)) return true;
    return file.Write(block.palette.Colours(), 3 * static_cast<size_t>(ColoursOfPacked(packed)));
}

bool WriteImageBlock(File& file, const Block& block, Manner manner) {
    return WriteByte(file, kImageIntroducer) >= 0 && file.Write(block.descriptor, kImageDescriptorBytes) &&
           WritePalette(file, block, GetImageFields(block).packed) && EncodeImageData(file, block, manner);
}

bool WriteControlBlock(File& file, const Block& block) {
    return WriteExtension(file, kControlLabel, block.descriptor, kControlDescriptorBytes);
}

bool WritePlainTextBlock(File& file, const Block& block, Manner manner) {
    return WriteTextExtension(file, kPlainTextLabel, block, kPlainTextDescriptorBytes, manner);
}

bool WriteApplicationBlock(File& file, const Block& block, Manner manner) {
    return WriteTextExtension(file, kApplicationLabel, block, kApplicationDescriptorBytes, manner);
}

bool WriteCommentBlock(File& file, const Block& block, Manner manner) {
    return WriteTextExtension(file, kCommentLabel, block, 0, manner);
}

bool WriteLoopBlock(File& file, const Block& block) {
    return WriteExtension(file, kApplicationLabel, block.descriptor, kLoopDescriptorBytes);
}

bool WriteUnknownBlock(File& file, const Block& block, Manner manner) {
    return WriteTextExtension(file, block.descriptor[0], block, 0, manner);
}
