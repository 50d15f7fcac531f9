#include "gif/whole_reader.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <new>

#include "gif/block_names.h"
#include "gif/descriptor.h"
#include "gif/lzw_decoder.h"
#include "gif/lzw_limits.h"
#include "gif/sub_block_span.h"
#include "gif/text_reader.h"
#include "platform/bytes.h"

namespace {

constexpr size_t kPrefixBytes = 128;
constexpr uint64_t kMostFileBytes = UINT32_MAX;  // a block's place in its file has 32 bits
constexpr size_t kExtensionHeadBytes = 3;        // introducer, label, size of the fixed part

// What an extension of a known kind begins with, behind its label.
struct FixedPart {
    uint8_t label;
    uint8_t bytes;
    BlockKind kind;
};
constexpr FixedPart kFixedParts[] = {
    {kPlainTextLabel, kPlainTextDescriptorBytes - 1, kPlainTextBlock},
    {kControlLabel, kControlDescriptorBytes - 2, kControlBlock},
    {kApplicationLabel, kApplicationDescriptorBytes - 1, kApplicationBlock},
};

const FixedPart* FindFixedPart(uint8_t label) {
    const auto* found = std::ranges::find(kFixedParts, label, &FixedPart::label);
    return found == std::end(kFixedParts) ? nullptr : found;
}

class WholeReader {
public:
    WholeReader(BlockList* list, const MemoryHandle& memory, std::span<const uint8_t> bytes, ReadReport* report)
        : list_(*list), memory_(memory), bytes_(bytes), report_(*report) {
        file_.OpenMemory(bytes.data(), bytes.size());
    }

    ReadResult Run() {
        size_t header = FindSignature();
        if (header == bytes_.size()) return kReadNotGif;
        list_.flags |= kReadWhole;
        if (!ReadHeader(header) || !ReadBlocks()) return kReadFailed;
        list_.after = {memory_, Offset(at_), Offset(bytes_.size() - at_)};
        RenumberBlocks(&list_);
        return ApplyBlockNames(&list_) ? kReadDone : kReadFailed;
    }

private:
    static uint32_t Offset(uint64_t at) { return static_cast<uint32_t>(at); }
    size_t Left(size_t at) const { return bytes_.size() - at; }

    void Report(DamageKind kind, size_t at, uint64_t detail = 0) {
        report_.damages.push_back({Offset(at), static_cast<int32_t>(list_.count), Offset(detail), kind});
    }
    void ReportNoBlock(DamageKind kind, size_t at, uint64_t detail = 0) {
        report_.damages.push_back({Offset(at), -1, Offset(detail), kind});
    }

    bool HasSignature(size_t at) const {
        return bytes_.size() >= at + kHeaderDescriptorBytes && memcmp(&bytes_[at], "GIF", 3) == 0;
    }
    size_t FindSignature() const {
        if (HasSignature(0)) return 0;
        return HasSignature(kPrefixBytes) ? kPrefixBytes : bytes_.size();
    }

    // Appends the block, whose bytes reach from `start` to `end`; those before it that start none go with it.
    bool Keep(Block* block, size_t start, size_t end) {
        block->aux = memory_;
        block->source = {Offset(at_), Offset(start - at_), Offset(end - start)};
        at_ = end;
        return AppendBlock(&list_, std::move(*block));
    }

    bool ReadHeader(size_t at);
    bool ReadBlocks();
    bool StartsBlock(size_t at) const {
        return bytes_[at] == kImageIntroducer || bytes_[at] == kExtensionIntroducer || bytes_[at] == kTrailer;
    }
    bool StartsWithClearCode(size_t at, int codeSize) const;
    bool LooksLikeBlock(size_t at) const;
    bool LooksLikeImage(size_t at) const;
    size_t FindBlock(size_t at) const;
    size_t ReadColourTable(size_t at, uint8_t packed, Block* block, bool* isThere);
    bool ReadImage(size_t start);
    void Decode(size_t at, Block* block);
    bool ReadExtension(size_t start);
    bool TakeFixedPart(const FixedPart& part, size_t start, size_t chainEnd, Block* block);
    bool TakeText(size_t at, Block* block);
    bool IsLoop(size_t start, size_t chainEnd) const;
    bool HasPartialBlock(size_t start);

    BlockList& list_;
    MemoryHandle memory_;
    std::span<const uint8_t> bytes_;
    ReadReport& report_;
    File file_;      // the same bytes, for who reads files
    size_t at_ = 0;  // what lies before belongs to blocks, or to the list
};

// Fills the palette from the table at `at`, as far as it goes; returns its end. False when it is cut short.
size_t WholeReader::ReadColourTable(size_t at, uint8_t packed, Block* block, bool* isThere) {
    RgbTriples colours = {};
    auto count = static_cast<size_t>(ColoursOfPacked(packed));
    size_t bytes = std::min(count * sizeof(RgbTriple), Left(at));
    if (bytes) memcpy(colours, &bytes_[at], bytes);
    *isThere = bytes == count * sizeof(RgbTriple);
    return block->palette.Set({colours, count}) ? at + bytes : SIZE_MAX;
}

bool WholeReader::ReadHeader(size_t at) {
    if (at > 0) ReportNoBlock(DamageKind::kPrefix, 0, at);
    list_.before = {memory_, 0, Offset(at)};
    at_ = at;
    Block block;
    block.kind = kHeaderBlock;
    memcpy(block.descriptor, &bytes_[at], kHeaderDescriptorBytes);
    size_t end = at + kHeaderDescriptorBytes;
    uint8_t packed = GetHeaderFields(block).packed;
    if (packed & kHasPalette) {
        bool isThere = false;
        size_t table = end;
        end = ReadColourTable(end, packed, &block, &isThere);
        if (end == SIZE_MAX) return false;
        if (!isThere) Report(DamageKind::kPaletteCut, table);
        block.isCutOff = !isThere;
    }
    return Keep(&block, at, end);
}

// Whether an image that starts here can be believed, where other bytes were met that start nothing.
bool WholeReader::LooksLikeImage(size_t at) const {
    if (Left(at) < kImageHeadBytes + 2) return false;
    Block block;
    memcpy(block.descriptor, &bytes_[at + 1], kImageDescriptorBytes);
    ImageFields image = GetImageFields(block);
    HeaderFields screen = GetHeaderFields(list_.blocks[0]);
    size_t codeSizeAt = at + kImageHeadBytes + TableBytesOfPacked(image.packed);
    if (codeSizeAt >= bytes_.size()) return false;
    int codeSize = bytes_[codeSizeAt];
    if (image.width == 0 || image.height == 0 || codeSize < kLeastCodeSize || codeSize > kMostCodeSize) return false;
    const bool isOnScreen =
        image.left + image.width <= screen.screenWidth && image.top + image.height <= screen.screenHeight;
    return isOnScreen || StartsWithClearCode(codeSizeAt + 1, codeSize);  // or moved off it
}

// Whether the sub-blocks at `at` begin with the code that encoders begin with.
bool WholeReader::StartsWithClearCode(size_t at, int codeSize) const {
    if (Left(at) < 3 || bytes_[at] < 2) return false;
    const unsigned codes = bytes_[at + 1] | unsigned{bytes_[at + 2]} << 8;
    return (codes & ((2u << codeSize) - 1)) == 1u << codeSize;
}

bool WholeReader::LooksLikeBlock(size_t at) const {
    if (bytes_[at] == kTrailer) return true;
    if (bytes_[at] == kImageIntroducer) return LooksLikeImage(at);
    if (bytes_[at] != kExtensionIntroducer || Left(at) <= kExtensionHeadBytes) return false;
    const FixedPart* part = FindFixedPart(bytes_[at + 1]);
    return part ? bytes_[at + 2] == part->bytes : bytes_[at + 1] == kCommentLabel;
}

// Where the next block or the trailer starts. Zeros are read over, as some writers end a block twice; behind anything
// else a block has to look like one.
size_t WholeReader::FindBlock(size_t at) const {
    while (at < bytes_.size() && bytes_[at] == 0) ++at;
    if (at == bytes_.size()) return at;
    if (StartsBlock(at)) return at;
    while (at < bytes_.size() && !LooksLikeBlock(at)) ++at;
    return at;
}

// Whether what starts here breaks off before it has become a block; it then belongs to the list.
bool WholeReader::HasPartialBlock(size_t start) {
    bool isPartial = true;
    if (bytes_[start] == kImageIntroducer) {
        isPartial = Left(start) < kImageHeadBytes;
    } else if (Left(start) >= kExtensionHeadBytes) {
        const FixedPart* part = FindFixedPart(bytes_[start + 1]);
        isPartial = part && Left(start) < kExtensionHeadBytes + bytes_[start + 2];
    }
    if (isPartial) ReportNoBlock(DamageKind::kBlockCut, start);
    return isPartial;
}

bool WholeReader::ReadBlocks() {
    for (;;) {
        size_t start = FindBlock(at_);
        if (start > at_) {
            DamageKind kind = DamageKind::kStrayBytes;
            const bool startsBlock = start < bytes_.size() && bytes_[start] != kTrailer;
            startsBlock ? Report(kind, at_, start - at_) : ReportNoBlock(kind, at_, start - at_);
        }
        report_.reachedTrailer = start < bytes_.size() && bytes_[start] == kTrailer;
        report_.fileEnded = start == bytes_.size();
        if (report_.reachedTrailer) {
            if (Left(start) > 1) ReportNoBlock(DamageKind::kBytesAfterTrailer, start + 1, Left(start) - 1);
            return true;
        }
        if (report_.fileEnded && start == at_) ReportNoBlock(DamageKind::kNoTrailer, start);
        if (report_.fileEnded) return true;
        if (HasPartialBlock(start)) return report_.fileEnded = true;
        if (!(bytes_[start] == kImageIntroducer ? ReadImage(start) : ReadExtension(start))) return false;
    }
}

bool WholeReader::ReadImage(size_t start) {
    Block block;
    block.kind = kImageBlock;
    memcpy(block.descriptor, &bytes_[start + 1], kImageDescriptorBytes);
    size_t at = start + kImageHeadBytes;
    bool isThere = true;
    uint8_t packed = GetImageFields(block).packed;
    if (packed & kHasPalette) at = ReadColourTable(at, packed, &block, &isThere);
    if (at == SIZE_MAX) return false;
    if (!isThere || at == bytes_.size()) {
        Report(isThere ? DamageKind::kBlockCut : DamageKind::kPaletteCut, bytes_.size());
        block.isCutOff = true;
        return Keep(&block, start, bytes_.size());
    }
    SubBlockChain chain = WalkSubBlocks(bytes_, at + 1);
    block.isCutOff = chain.isCutOff;
    Decode(at, &block);
    return Keep(&block, start, chain.end);
}

// Gives the image its bitmap, if it can have one. Its minimum code size stands at `at`, its data behind.
void WholeReader::Decode(size_t at, Block* block) {
    int codeSize = bytes_[at];
    ImageFields fields = GetImageFields(*block);
    const bool hasOwnPalette = (fields.packed & kHasPalette) != 0;
    GlobalPalette global = PaletteOfHeader(list_.blocks[0]);
    Palette palette = hasOwnPalette ? block->palette : global.colours;
    int depth = hasOwnPalette ? DepthOfPacked(fields.packed) : global.depth;
    const bool hasPalette = depth > 0;
    if (!hasPalette) depth = std::clamp(codeSize, 1, 8);
    fields.packed = WithDepth(fields.packed, depth);
    PutImageFields(block, fields);
    if (codeSize < kLeastWholeCodeSize || codeSize > kMostWholeCodeSize)
        return Report(DamageKind::kCodeSize, at, static_cast<uint64_t>(codeSize));

    if (!hasPalette) Report(DamageKind::kNoPalette, at);
    const uint64_t room = uint64_t{fields.width} * fields.height;
    uint64_t pixels = 0;
    unsigned values = 0;  // where some may be lost
    unsigned* const asked = BitCountForDepth(depth) < 8 ? &values : nullptr;
    auto decode = [&](int bits) {
        block->data = CreateImageBitmap(fields.width, fields.height, palette, bits);
        file_.Seek(at + 1);
        return block->data ? DecodeImageData(file_, codeSize, block, Manner::kWhole, &pixels, asked) : kDecodeNoMemory;
    };
    DecodeResult result = decode(depth);
    // Pixels that are no colours stay what they are, too, for which the bitmap may need more bits than its palette.
    if (const int needed = static_cast<int>(std::bit_width(values)); needed > BitCountForDepth(depth))
        result = decode(needed);
    if (result == kDecodeNoMemory) {
        block->data = nullptr;
        Report(DamageKind::kPictureTooLarge, at);
    } else if (result == kDecodeCorrupt) {
        Report(pixels < room ? DamageKind::kBadCode : DamageKind::kBadCodeBehind, at, pixels);
    } else if (block->isCutOff) {
        Report(DamageKind::kBlockCut, bytes_.size(), pixels);
    } else if (pixels < room) {
        Report(DamageKind::kPixelsMissing, at, pixels);
    }
}

// Takes the descriptor of an extension whose fixed part is as long as its kind wants, or longer. False when it is
// shorter.
bool WholeReader::TakeFixedPart(const FixedPart& part, size_t start, size_t chainEnd, Block* block) {
    size_t bytes = bytes_[start + 2];
    if (bytes < part.bytes) return false;
    block->kind = part.kind;
    block->descriptor[0] = part.bytes;
    memcpy(block->descriptor + 1, &bytes_[start + kExtensionHeadBytes], part.bytes);
    if (bytes > part.bytes)
        Report(DamageKind::kOddSize, start + 2, bytes);
    else if (part.kind == kControlBlock && !block->isCutOff && chainEnd > start + 2 + kControlDescriptorBytes)
        Report(DamageKind::kMoreSubBlocks, start + 2 + kControlDescriptorBytes - 1);
    return true;
}

// Keeps the text of the sub-blocks at `at`, as far as blocks keep texts. False when memory runs out.
bool WholeReader::TakeText(size_t at, Block* block) {
    file_.Seek(at);
    return block->kind == kCommentBlock ? ReadComment(file_, block) : ReadText(file_, block);
}

// Whether the application block counts repetitions: a sub-block of three bytes, the first of them 1, as the first one.
bool WholeReader::IsLoop(size_t start, size_t chainEnd) const {
    size_t at = start + 2 + kApplicationDescriptorBytes;
    return chainEnd >= start + 2 + kLoopDescriptorBytes - 1 && bytes_[at] == 3 && bytes_[at + 1] == 1 &&
           memcmp(&bytes_[start + kExtensionHeadBytes], kLoopApplication, kIdentifierBytes + kAuthenticationBytes) == 0;
}

bool WholeReader::ReadExtension(size_t start) {
    Block block;
    const uint8_t label = bytes_[start + 1];
    SubBlockChain chain = WalkSubBlocks(bytes_, start + 2);
    block.isCutOff = chain.isCutOff;
    size_t textAt = start + 2;
    const FixedPart* part = FindFixedPart(label);
    if (part && TakeFixedPart(*part, start, chain.end, &block)) {
        textAt += 1 + size_t{bytes_[start + 2]};
    } else {
        if (part) Report(DamageKind::kOddSize, start + 2, bytes_[start + 2]);
        block.kind = label == kCommentLabel ? kCommentBlock : kUnknownBlock;
        if (block.kind == kUnknownBlock) block.descriptor[0] = label;
    }
    const bool isRegular = part && bytes_[start + 2] == part->bytes;
    if (block.kind == kApplicationBlock && isRegular && IsLoop(start, chain.end)) {
        block.kind = kLoopBlock;
        memcpy(block.descriptor, &bytes_[start + 2], kLoopDescriptorBytes - 1);  // the last one is the terminator
    } else if (block.kind == kApplicationBlock && isRegular &&
               memcmp(block.descriptor + kIdentifierOffset, kNamesApplication,
                      kIdentifierBytes + kAuthenticationBytes) == 0) {
        block.kind = kBlockNamesBlock;
    }
    if (block.kind != kControlBlock && block.kind != kLoopBlock && !TakeText(textAt, &block)) return false;
    if (block.isCutOff) Report(DamageKind::kBlockCut, bytes_.size());
    return Keep(&block, start, chain.end);
}

}  // namespace

ReadResult ReadWholeGif(BlockList* list, File& file, ReadReport* report) {
    size_t bytes;
    MemoryHandle memory = file.ReadRest(kMostFileBytes, &bytes);
    MemoryLock lock(memory);
    if (!lock) return kReadFailed;
    try {
        return WholeReader(list, memory, {lock.Bytes(), bytes}, report).Run();
    } catch (const std::bad_alloc&) {  // the list of damages has no room
        return kReadFailed;
    }
}
