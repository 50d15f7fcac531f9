#include "editing/block_values.h"

#include <algorithm>

#include "gif/descriptor.h"
#include "platform/checksum.h"
#include "platform/text_encoding.h"

namespace {

using Values = std::vector<BlockValue>;

constexpr char kDigits[] = "0123456789abcdef";

std::string YesNo(unsigned bits) {
    return bits ? "yes" : "no";
}

std::string Number(unsigned number) {
    return std::to_string(number);
}

std::string HexByte(unsigned byte) {
    return {'0', 'x', kDigits[byte >> 4 & 15], kDigits[byte & 15]};
}

std::string Characters(const Block& block, size_t at, size_t count) {
    return Utf8FromWindows1252({reinterpret_cast<const char*>(block.descriptor) + at, count});
}

// Without a palette the size code counts nothing, and is a number like others.
unsigned OtherBits(uint8_t packed, unsigned known) {
    if (packed & kHasPalette) known |= kSizeCode;
    return packed & ~(known | kHasPalette);
}

Values ValuesOfHeader(const Block& block) {
    const HeaderFields header = GetHeaderFields(block);
    return {{"version", Characters(block, 0, kSignatureBytes)},
            {"width", Number(header.screenWidth)},
            {"height", Number(header.screenHeight)},
            {"background", Number(header.backgroundIndex)},
            {"aspect", Number(header.aspect)},
            {"sorted", YesNo(header.packed & kQuirkHeaderSorted)},
            {"flags", HexByte(OtherBits(header.packed, kQuirkHeaderSorted))}};
}

// The size code of an image without own colours is that of the global ones.
Values ValuesOfImage(const Block& block) {
    const ImageFields image = GetImageFields(block);
    return {{"left", Number(image.left)},
            {"top", Number(image.top)},
            {"width", Number(image.width)},
            {"height", Number(image.height)},
            {"interlaced", YesNo(image.packed & kImageInterlaced)},
            {"flags", HexByte(OtherBits(image.packed, kImageInterlaced | kSizeCode))}};
}

std::string NameOfDisposal(unsigned disposal) {
    constexpr const char* kNames[] = {"nothing", "leave", "background", "previous"};
    return disposal < std::size(kNames) ? kNames[disposal] : Number(disposal);
}

// An index that counts for nothing is shown when it is there.
std::string NameOfTransparent(const ControlFields& control) {
    std::string index = Number(control.transparentIndex);
    if (control.packed & kControlTransparent) return index;
    return control.transparentIndex ? "none (" + index + ")" : "none";
}

Values ValuesOfControl(const Block& block) {
    const ControlFields control = GetControlFields(block);
    constexpr unsigned kKnown = kControlTransparent | kControlUserInput | kControlDisposal;
    return {{"delay", Number(control.delay)},
            {"disposal", NameOfDisposal((control.packed & kControlDisposal) >> kControlDisposalShift)},
            {"transparent", NameOfTransparent(control)},
            {"input", YesNo(control.packed & kControlUserInput)},
            {"flags", HexByte(control.packed & ~kKnown)}};
}

Values ValuesOfPlainText(const Block& block) {
    const PlainTextFields text = GetPlainTextFields(block);
    return {{"left", Number(text.left)},
            {"top", Number(text.top)},
            {"foreground", Number(text.foregroundIndex)},
            {"background", Number(text.backgroundIndex)},
            {"grid-width", Number(text.gridWidth)},
            {"grid-height", Number(text.gridHeight)},
            {"cell-width", Number(text.cellWidth)},
            {"cell-height", Number(text.cellHeight)}};
}

}  // namespace

std::vector<BlockValue> GetBlockValues(const Block& block) {
    switch (block.kind) {
        case kHeaderBlock: return ValuesOfHeader(block);
        case kImageBlock: return ValuesOfImage(block);
        case kControlBlock: return ValuesOfControl(block);
        case kPlainTextBlock: return ValuesOfPlainText(block);
        case kApplicationBlock:
            return {{"identifier", Characters(block, kIdentifierOffset, kIdentifierBytes + kAuthenticationBytes)}};
        case kLoopBlock: return {{"iterations", Number(GetLoopIterations(block))}};
        case kUnknownBlock: return {{"label", HexByte(block.descriptor[0])}};
        default: return {};
    }
}

bool HasBlockText(const Block& block) {
    return block.kind == kPlainTextBlock || block.kind == kCommentBlock;
}

bool GetBlockBytes(const Block& block, BlockData* bytes) {
    *bytes = {};
    const bool hasBytes = HasBlockText(block) || HasBlockData(block) || block.kind == kBlockNamesBlock;
    return !hasBytes || GetBlockData(block, bytes);
}

int CountOwnColours(const Block& block) {
    if (block.kind != kHeaderBlock && block.kind != kImageBlock) return 0;
    const uint8_t packed = block.kind == kHeaderBlock ? GetHeaderFields(block).packed : GetImageFields(block).packed;
    return (packed & kHasPalette) ? ColoursOfPacked(packed) : 0;
}

std::optional<uint32_t> SumOfPixels(const Block& block) {
    if (block.kind != kImageBlock) return std::nullopt;
    ImageLock bitmap(block.data);
    if (!bitmap) return std::nullopt;
    const auto width = static_cast<size_t>(bitmap->width);
    const size_t rowBytes = bitmap->bitCount == 24 ? 3 * width : width;
    std::unique_ptr<uint8_t[]> unpacked = AllocateScratch(rowBytes);
    if (!unpacked) return std::nullopt;
    uint32_t sum = 0;
    for (int y = 0; y < bitmap->height; ++y) {
        const uint8_t* row = ImageRow(bitmap, y);
        if (bitmap->bitCount < 8) {
            for (int x = 0; x < bitmap->width; ++x)
                unpacked[static_cast<size_t>(x)] = IndexAt(row, x, bitmap->bitCount);
            row = unpacked.get();
        }
        sum = Crc32({row, rowBytes}, sum);
    }
    return sum;
}
