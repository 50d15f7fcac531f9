#include "editing/repair.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <optional>
#include <span>

#include "gif/descriptor.h"
#include "gif/lzw_encoder.h"
#include "gif/source_bytes.h"

namespace {

using ByteSpan = std::span<const uint8_t>;

constexpr uint8_t kLabelEnd = 2;  // an extension's fixed part, its size first, starts here

std::string BytesText(uint64_t count) {
    return std::to_string(count) + (count == 1 ? " byte" : " bytes");
}

std::string Are(uint64_t count) {
    return count == 1 ? " is left out" : " are left out";
}

// What is wrong with one block.
struct Ills {
    bool paletteCut = false, oddSize = false, moreSubBlocks = false, noPalette = false, tooLarge = false;
    bool badCode = false;            // in the image's data
    std::optional<uint64_t> pixels;  // of an image whose data is damaged: so many could be decoded
};

void Add(const Damage& damage, Ills* ills) {
    switch (damage.kind) {
        case DamageKind::kPaletteCut: ills->paletteCut = true; break;
        case DamageKind::kOddSize: ills->oddSize = true; break;
        case DamageKind::kMoreSubBlocks: ills->moreSubBlocks = true; break;
        case DamageKind::kNoPalette: ills->noPalette = true; break;
        case DamageKind::kPictureTooLarge: ills->tooLarge = true; break;
        case DamageKind::kBadCode:
        case DamageKind::kBadCodeBehind: ills->badCode = true; [[fallthrough]];
        case DamageKind::kBlockCut:
        case DamageKind::kPixelsMissing: ills->pixels = damage.detail; break;
        default: break;  // of the document
    }
}

std::vector<Ills> IllsOfBlocks(const BlockList& list, const std::vector<Damage>& damages) {
    std::vector<Ills> ills(list.count);
    for (const Damage& damage : damages)
        if (damage.block >= 0 && static_cast<uint32_t>(damage.block) < list.count)
            Add(damage, &ills[static_cast<size_t>(damage.block)]);
    return ills;
}

// Gives the block these bytes as its own. They may lie in its old ones.
bool SetSource(Block* block, std::initializer_list<ByteSpan> parts) {
    size_t bytes = 0;
    for (ByteSpan part : parts) bytes += part.size();
    MemoryHandle memory = AllocateMemory(bytes);
    WriteLock lock(&memory);
    if (!lock) return false;
    uint8_t* next = lock.Bytes();
    for (ByteSpan part : parts) next = std::copy(part.begin(), part.end(), next);
    block->aux = memory;
    block->source = {0, 0, static_cast<uint32_t>(bytes)};
    block->isCutOff = false;
    return true;
}

// Makes the fixed part of an extension have `size` bytes. What an application's has too many becomes data.
bool ResizeFixedPart(Block* block, uint8_t size, bool isApplication) {
    constexpr uint8_t kNothing[UINT8_MAX] = {};
    SourceLock source(*block);
    if (!source) return false;
    ByteSpan head = source.Own().first(kLabelEnd);
    ByteSpan chain = source.Own().subspan(kLabelEnd);
    ByteSpan fixed = chain[0] ? chain.subspan(1, std::min<size_t>(chain[0], chain.size() - 1)) : ByteSpan{};
    if (!fixed.empty()) chain = chain.subspan(1 + fixed.size());
    ByteSpan kept = fixed.first(std::min<size_t>(size, fixed.size()));
    ByteSpan extra = isApplication ? fixed.subspan(kept.size()) : ByteSpan{};
    const auto extraBytes = static_cast<uint8_t>(extra.size());
    return SetSource(block, {head,
                             {&size, 1},
                             kept,
                             ByteSpan(kNothing).first(size - kept.size()),
                             ByteSpan(&extraBytes, extra.empty() ? 0 : 1),
                             extra,
                             chain});
}

// Gives an image a palette of its own where it has none to be shown with, or one too small for its pixels to be
// encoded: the colours that its bitmap has. False when memory runs out.
bool FitPalette(Block* image, bool noPalette) {
    ImageLock bitmap(image->data);
    if (!bitmap) return false;
    ImageFields fields = GetImageFields(*image);
    const int depth = std::max(DepthOfPacked(fields.packed), DepthOfPixels(bitmap));
    if (!noPalette && depth == DepthOfPacked(fields.packed)) return true;
    RgbTriples colours = {};
    GetImagePalette(bitmap, colours);
    if (!image->palette.Set({colours, size_t{1} << depth})) return false;
    fields.packed = static_cast<uint8_t>(WithDepth(fields.packed, depth) | kHasPalette);
    PutImageFields(image, fields);
    return true;
}

// The byte behind the introducer; -1 when it can't be reached.
int LabelOf(const Block& extension) {
    SourceLock source(extension);
    return source && source.Own().size() > 1 ? source.Own()[1] : -1;
}

class Repairer {
public:
    Repairer(BlockList* list, const ReadReport& report, std::vector<RepairStep>* steps)
        : list_(list),
          report_(report),
          steps_(steps),
          ills_(IllsOfBlocks(*list, report.damages)),
          isGone_(list->count) {}

    bool Run() {
        if (list_->before.bytes)
            Tell(BytesText(list_->before.bytes) + " before the signature" + Are(list_->before.bytes));
        list_->before = {};
        for (here_ = 0; here_ < static_cast<int32_t>(list_->count); ++here_)
            if (!RepairBlock(&list_->blocks[static_cast<size_t>(here_)])) return false;
        here_ = -1;
        if (!RepairEnd()) return false;
        RemoveGone();
        return true;
    }

private:
    void Tell(const std::string& text) {
        steps_->push_back(
            {here_, here_ < 0 ? uint16_t{kEmptyBlock} : list_->blocks[static_cast<size_t>(here_)].kind, text});
    }

    void LeaveOut(const std::string& why) {
        Tell("left out, as " + why);
        isGone_[static_cast<size_t>(here_)] = true;
    }

    bool RepairBlock(Block* block) {
        const Ills& ills = ills_[static_cast<size_t>(here_)];
        if (const uint32_t stray = block->source.stray) {
            Tell(BytesText(stray) + " before it, which start" + (stray == 1 ? "s" : "") + " no block," + Are(stray));
            block->source.start += stray;
            block->source.stray = 0;
        }
        if (block->kind == kHeaderBlock) return RepairHeader(block, ills);
        if (block->kind == kImageBlock) return RepairImage(block, ills);
        if (block->isCutOff) return RepairCutExtension(block);
        if (ills.moreSubBlocks) {
            Tell("what it has behind its fixed part is left out");
            return MarkChanged(block);
        }
        return !ills.oddSize || RepairFixedPart(block);
    }

    bool RepairHeader(Block* header, const Ills& ills) {
        const std::string version(header->descriptor, header->descriptor + kSignatureBytes);
        const bool isOdd = version != "GIF87a" && version != kSignature;
        if (isOdd) {
            Tell("its version becomes GIF89a");
            memcpy(header->descriptor, kSignature, kSignatureBytes);
        }
        if (ills.paletteCut) Tell("its palette is cut off; the colours that are missing become black");
        // The writer brings a palette that is cut to its end.
        return !isOdd || MarkChanged(header);
    }

    bool RepairImage(Block* image, const Ills& ills) {
        const ImageFields fields = GetImageFields(*image);
        const uint64_t room = uint64_t{fields.width} * fields.height;
        if (!ills.tooLarge && (!image->data || (room && ills.pixels == 0u))) {
            LeaveOutImage();
            return true;
        }
        const bool isShort = ills.pixels && *ills.pixels < room && image->data;
        if (isShort) {
            const std::string rows = std::to_string(*ills.pixels / fields.width) + " of " +
                                     std::to_string(fields.height) + " rows; the rest is left empty";
            Tell((ills.badCode ? "its data makes no sense after " : "its data ends after ") + rows);
        } else if (ills.badCode) {
            Tell("what makes no sense behind the last pixel of its data is left out");
        } else if (image->isCutOff) {
            Tell("its data is ended, as the file breaks off in it");
        }
        if (ills.noPalette && image->data) Tell("it gets a palette of its own, as there is none");
        // Data that is cut may hold pixels too many. Without pixels the writer ends what there is of it.
        const bool encodes = image->data && (isShort || ills.badCode || ills.noPalette || image->isCutOff);
        return !encodes || (FitPalette(image, ills.noPalette) && MarkChanged(image));
    }

    // The controls between the picture before it and this one are about this one.
    void LeaveOutImage() {
        bool isControlled = false;
        for (auto index = static_cast<size_t>(here_); index-- > 0;) {
            const Block& before = list_->blocks[index];
            if (before.kind == kImageBlock || before.kind == kPlainTextBlock) break;
            if (before.kind == kControlBlock) isControlled = isGone_[index] = true;
        }
        const std::string what = isControlled ? "it and its control block are left out, as" : "it is left out, as";
        Tell(what + " nothing of its picture can be decoded");
        isGone_[static_cast<size_t>(here_)] = true;
    }

    bool RepairCutExtension(Block* block) {
        const bool isText = block->kind == kCommentBlock || block->kind == kPlainTextBlock;
        if ((isText && block->dataLength) || block->kind == kLoopBlock) {
            Tell("it is ended, as the file breaks off in it");  // the writer does that
            return true;
        }
        LeaveOut("the file breaks off in it");
        return true;
    }

    // A fixed part that is too long is cut to its usual size. Of one that is too short (the block is of unknown type
    // then) only applications' is padded: their data may still be of use.
    bool RepairFixedPart(Block* block) {
        const bool isApplication = LabelOf(*block) == kApplicationLabel;
        if (block->kind == kUnknownBlock && (!isApplication || block->dataLength == 0)) {
            LeaveOut("its fixed part is too short");
            return true;
        }
        Tell("its fixed part becomes as long as it has to be");
        if (block->kind == kControlBlock) return MarkChanged(block);
        const int bytes = isApplication ? kApplicationDescriptorBytes : kPlainTextDescriptorBytes;
        return ResizeFixedPart(block, static_cast<uint8_t>(bytes - 1), isApplication);
    }

    // Behind the last block there is to be the trailer and nothing else.
    bool RepairEnd() {
        const bool hasTrailer = report_.reachedTrailer;
        auto behind = std::ranges::find(report_.damages, DamageKind::kBytesAfterTrailer, &Damage::kind);
        const uint32_t behindTrailer = behind == report_.damages.end() ? 0 : behind->detail;
        const uint32_t stray = list_->after.bytes - behindTrailer - (hasTrailer ? 1 : 0);
        if (stray) Tell(BytesText(stray) + " behind the last block" + Are(stray));
        if (behindTrailer) Tell(BytesText(behindTrailer) + " behind the trailer" + Are(behindTrailer));
        if (!hasTrailer) Tell("the trailer is added");
        if (hasTrailer && list_->after.bytes == 1) return true;
        list_->after = {AllocateMemory(1), 0, 1};
        WriteLock lock(&list_->after.memory);
        if (lock) *lock.Bytes() = kTrailer;
        return static_cast<bool>(lock);
    }

    void RemoveGone() {
        std::vector<uint32_t> gone;
        for (uint32_t index = 0; index < list_->count; ++index)
            if (isGone_[index]) gone.push_back(index);
        if (!gone.empty()) RemoveBlocks(list_, gone);
    }

    BlockList* list_;
    const ReadReport& report_;
    std::vector<RepairStep>* steps_;
    std::vector<Ills> ills_;
    std::vector<bool> isGone_;
    int32_t here_ = -1;  // the block being repaired
};

}  // namespace

bool RepairDocument(BlockList* list, const ReadReport& report, std::vector<RepairStep>* steps) {
    return Repairer(list, report, steps).Run();
}
