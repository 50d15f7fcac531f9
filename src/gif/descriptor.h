// The bytes that mark the blocks of a GIF file, their descriptors as the file holds them, and the fields in those.
#pragma once

#include <cstdint>

#include "gif/block.h"

constexpr int kImageIntroducer = 0x2C;
constexpr int kExtensionIntroducer = 0x21;  // a label follows
constexpr int kTrailer = 0x3B;
constexpr int kPlainTextLabel = 0x01;
constexpr int kControlLabel = 0xF9;
constexpr int kCommentLabel = 0xFE;
constexpr int kApplicationLabel = 0xFF;

constexpr char kSignature[] = "GIF89a";             // of what is made here; files may have another version
constexpr char kLoopApplication[] = "NETSCAPE2.0";  // identifier and authentication code
constexpr char kNamesApplication[] = "KELMORnb1.0";

// Packed byte of the header and of images.
constexpr uint8_t kHasPalette = 0x80;  // a global (header) or local (image) colour table follows
constexpr uint8_t kImageInterlaced = 0x40;
constexpr uint8_t kQuirkHeaderSorted = 0x40;  // where this program keeps the header's sort flag; others have it in 0x08
constexpr uint8_t kSizeCode = 0x07;           // bit depth of the colours, less 1

// Packed byte of control blocks.
constexpr uint8_t kControlTransparent = 0x01;
constexpr uint8_t kControlUserInput = 0x02;
constexpr uint8_t kControlDisposal = 0x1C;
constexpr int kControlDisposalShift = 2;

// Bit depth that the low bits of a header's or an image's packed byte stand for: 1 to 8.
constexpr int DepthOfPacked(uint8_t packed) {
    return (packed & kSizeCode) + 1;
}
// `packed` with the low bits for `depth` (1 to 8).
constexpr uint8_t WithDepth(uint8_t packed, int depth) {
    return static_cast<uint8_t>((packed & ~kSizeCode) | (depth - 1));
}
constexpr int ColoursOfPacked(uint8_t packed) {
    return 1 << DepthOfPacked(packed);
}
// Bytes of the colour table that it announces in the file, if any.
constexpr size_t TableBytesOfPacked(uint8_t packed) {
    return (packed & kHasPalette) ? sizeof(RgbTriple) * static_cast<size_t>(ColoursOfPacked(packed)) : 0;
}

struct HeaderFields {                    // 13 bytes
    uint16_t screenWidth, screenHeight;  // the signature before them stays in the descriptor
    uint8_t packed, backgroundIndex, aspect;
};
struct ImageFields {  // 9 bytes
    uint16_t left, top, width, height;
    uint8_t packed;
};
struct ControlFields {  // 6 bytes: the size 4, these, the terminator 0
    uint8_t packed;
    uint16_t delay;  // hundredths of a second
    uint8_t transparentIndex;
    bool operator==(const ControlFields&) const = default;
};
struct PlainTextFields {  // 13 bytes: the size 12, then these
    uint16_t left, top, gridWidth, gridHeight;
    uint8_t cellWidth, cellHeight, foregroundIndex, backgroundIndex;
};

constexpr int kHeaderDescriptorBytes = 13;
constexpr int kImageDescriptorBytes = 9;
constexpr int kControlDescriptorBytes = 6;
constexpr int kPlainTextDescriptorBytes = 13;
constexpr int kApplicationDescriptorBytes = 12;
constexpr int kLoopDescriptorBytes = 17;
constexpr unsigned kImageHeadBytes = 1 + kImageDescriptorBytes;  // with the introducer
constexpr int kSignatureBytes = 6;
constexpr unsigned kMostSubBlockBytes = 255;
constexpr uint32_t kMostDelay = 65535;  // hundredths of a second
constexpr int kIdentifierOffset = 1;    // application blocks: 8 characters, then 3 of authentication code
constexpr int kIdentifierBytes = 8;
constexpr int kAuthenticationOffset = 9;
constexpr int kAuthenticationBytes = 3;

// Read the fields out of a block of the kind, and write them back. Writing leaves all other descriptor bytes alone.
HeaderFields GetHeaderFields(const Block& block);
void PutHeaderFields(Block* block, const HeaderFields& fields);
ImageFields GetImageFields(const Block& block);
void PutImageFields(Block* block, const ImageFields& fields);
ControlFields GetControlFields(const Block& block);
void PutControlFields(Block* block, const ControlFields& fields);
PlainTextFields GetPlainTextFields(const Block& block);
void PutPlainTextFields(Block* block, const PlainTextFields& fields);
void SetTransparency(Block* control, int index);  // 0 to 255
uint16_t GetLoopIterations(const Block& block);   // 0 stands for ever
void PutLoopIterations(Block* block, uint16_t iterations);
