#include "editing/block_copy.h"

#include <algorithm>
#include <cstring>
#include <numeric>

#include "animation/animation.h"
#include "editing/keep_looks.h"
#include "editing/list_draft.h"
#include "gif/descriptor.h"
#include "gif/source_bytes.h"
#include "imaging/dither.h"
#include "imaging/nearest_colour.h"
#include "imaging/remap.h"
#include "texts/string_ids.h"
#include "texts/strings.h"

namespace {

constexpr int kNoControl = -1;
constexpr size_t kCodeSizeAt = kImageHeadBytes;  // in the bytes of an image without a palette
constexpr int kLeastDepthOfCodes = 2;

struct IndexSet {
    bool has[kPaletteEntries] = {};
};

// Calls `what` with each pixel of a bitmap of up to 8 bits a pixel.
template <typename What>
void ForEachPixel(ConstLockedBitmap bitmap, What what) {
    for (int y = 0; y < bitmap->height; ++y)
        for (int x = 0; x < bitmap->width; ++x) what(x, y, IndexAt(ImageRow(bitmap, y), x, bitmap->bitCount));
}

// Gives the block's bytes memory of their own: that of its file holds the whole file. False when there is none.
bool OwnBytes(Block* block) {
    if (!HasSource(*block)) {
        block->source = {};
        block->aux = nullptr;
        return true;
    }
    SourceLock source(*block);
    if (!source) return false;
    MemoryHandle own = AllocateMemory(source.Own().size());
    WriteLock copy(&own);
    if (!copy) return false;
    memcpy(copy.Bytes(), source.Own().data(), source.Own().size());
    block->source = {0, 0, static_cast<uint32_t>(source.Own().size())};
    block->aux = own;
    return true;
}

// The bitmap with these colours: the ones that a conversion takes for its pixels'.
MemoryHandle InColours(MemoryHandle data, const RgbTriple* palette) {
    RgbTriples known = {};
    {
        ImageLock bitmap(data);
        if (!bitmap) return nullptr;
        const auto bytes = sizeof(RgbTriple) * static_cast<size_t>(GetImagePalette(bitmap, known));
        if (memcmp(known, palette, bytes) == 0) return data;
    }
    ImageWriteLock bitmap(&data);
    if (!bitmap) return nullptr;
    SetImagePalette(bitmap, palette);
    return data;
}

// The work on one selection: the copies so far, and which of their controls counts for the next image.
class BlockCopier {
public:
    BlockCopier(const BlockList& other, ForeignColours colours, const BlockList& list)
        : other_(other),
          colours_(colours),
          list_(list),
          from_(FindGlobalPalette(other)),
          to_(FindGlobalPalette(list)) {}

    // Returns why not, or an empty text.
    std::string Copy(std::span<const uint32_t> blocks);
    std::vector<Block>& Copies() { return copies_; }
    bool WantsChoice() const { return wantsChoice_; }

private:
    std::string CopyOne(const Block& original);
    std::string CopyImage(Block image);
    std::string CopyText(Block text);
    std::string Convert(Block* image);
    std::string Separate(Block* image, const Block& original);
    bool MeansTheSame(const Block& image, const Palette& palette, int depth) const;
    bool GiveOwnPalette(Block* image) const;
    bool StaysReadable(Block* image) const;
    bool TakeImage(Block image);
    bool SetControl(const ControlFields& fields);
    std::string OtherColours() {
        wantsChoice_ = colours_ == ForeignColours::kRefuse;
        return "its colours are not the document's";
    }
    bool IsWholeWithoutPalette() const { return to_.depth == 0 && (list_.flags & kReadWhole); }

    const BlockList& other_;
    ForeignColours colours_;
    const BlockList& list_;
    GlobalPalette from_, to_;
    std::vector<Block> copies_;
    int control_ = kNoControl;     // its number among the copies
    ControlFields counting_ = {};  // what it said for the image
    bool isOfText_ = false;        // a text stands between it and the image
    bool wantsChoice_ = false;
};

constexpr char kTooLittleMemory[] = "not enough memory";

// Whether the pixels show the same in the document's global palette. Those that are transparent show nothing, but have
// to be told from others where there is room for no more indexes than the palette has. Those that are no colours stay
// so in a document that was read whole, where they have room.
bool BlockCopier::MeansTheSame(const Block& image, const Palette& palette, int depth) const {
    const size_t room = to_.depth ? size_t{1} << to_.depth : 0;
    ImageLock bitmap(image.data);
    if (!bitmap)
        return depth > 0 && depth <= to_.depth &&
               std::equal(palette.Colours(), palette + (1 << depth), to_.colours.Colours());
    IndexSet used;
    ForEachPixel(bitmap, [&](int, int, uint8_t index) { used.has[index] = true; });
    const bool isTransparent = control_ != kNoControl && (counting_.packed & kControlTransparent);
    const size_t colours = depth > 0 ? size_t{1} << depth : 0;
    const size_t last = (list_.flags & kReadWhole) ? std::max(colours, room) : kPaletteEntries;
    for (size_t index = 0; index < last; ++index) {
        const bool isSeen = !isTransparent || index != counting_.transparentIndex;
        if (used.has[index] && (index >= room || (isSeen && palette[index] != to_.colours[index]))) return false;
    }
    return true;
}

bool BlockCopier::GiveOwnPalette(Block* image) const {
    if (!MarkChanged(image)) return false;
    ImageFields fields = GetImageFields(*image);
    if (from_.depth) fields.packed = WithDepth(fields.packed, from_.depth);
    fields.packed |= kHasPalette;
    PutImageFields(image, fields);
    image->palette = from_.colours;
    return true;
}

// Codes that the old palette had no colours for were read as others, and might find some in the new one: then the image
// is encoded anew, as it was read.
bool BlockCopier::StaysReadable(Block* image) const {
    if (!HasSource(*image) || !image->data || from_.depth == to_.depth) return true;
    {
        SourceLock source(*image);
        if (!source || source.Own().size() <= kCodeSizeAt) return false;
        if (source.Own()[kCodeSizeAt] <= std::max(from_.depth, kLeastDepthOfCodes)) return true;
    }
    return MarkChanged(image);
}

bool BlockCopier::SetControl(const ControlFields& fields) {
    Block control = copies_[static_cast<size_t>(control_)];
    PutControlFields(&control, fields);
    if (SameContent(control, copies_[static_cast<size_t>(control_)])) return true;
    if (!MarkChanged(&control)) return false;
    if (isOfText_)
        copies_.push_back(control);  // one more, for the image alone
    else
        copies_[static_cast<size_t>(control_)] = control;
    return true;
}

// Gives what is transparent in `original`, whose pixels `image` has in other colours, an index that no other pixel has.
std::string BlockCopier::Separate(Block* image, const Block& original) {
    if (control_ == kNoControl || !(counting_.packed & kControlTransparent)) return "";
    const uint8_t transparent = counting_.transparentIndex;
    const size_t room = size_t{1} << to_.depth;
    ImageLock old(original.data);
    ImageWriteLock fresh(&image->data);
    if (!old || !fresh) return kTooLittleMemory;
    IndexSet used;
    bool isThere = false;
    ForEachPixel(old, [&](int x, int y, uint8_t index) {
        if (index == transparent)
            isThere = true;
        else
            used.has[GetImagePixel(fresh, x, y) & (room - 1)] = true;
    });
    const auto spare = static_cast<size_t>(std::find(used.has, used.has + room, false) - used.has);
    if (spare == room && isThere) return "the document's palette leaves no colour for what is transparent in it";
    if (spare == room)
        counting_.packed = static_cast<uint8_t>(counting_.packed & ~kControlTransparent);
    else
        counting_.transparentIndex = static_cast<uint8_t>(spare);
    if (isThere)
        ForEachPixel(old, [&](int x, int y, uint8_t index) {
            if (index == transparent) SetImagePixel(fresh, x, y, static_cast<uint32_t>(spare));
        });
    return "";
}

std::string BlockCopier::Convert(Block* image) {
    const Block original = *image;
    if (!original.data) return "its picture can't be decoded, and its colours are not the document's";
    const MemoryHandle coloured = InColours(original.data, ColoursOf(original, from_));
    if (!coloured) return kTooLittleMemory;
    std::optional<ImageInfo> info = GetImageInfo(coloured);
    const bool dithers = colours_ == ForeignColours::kDither && info && info->bitCount > 1;
    Result<MemoryHandle> converted =
        dithers ? DitherImage(coloured, to_.colours, to_.depth, nullptr) : RemapImage(coloured, to_.colours, to_.depth);
    if (!converted || !MarkChanged(image)) return kTooLittleMemory;
    image->data = *converted;
    image->palette.Clear();
    ImageFields fields = GetImageFields(*image);
    fields.packed = WithDepth(static_cast<uint8_t>(fields.packed & ~kHasPalette), to_.depth);
    PutImageFields(image, fields);
    return Separate(image, original);
}

bool BlockCopier::TakeImage(Block image) {
    if (!OwnBytes(&image)) return false;
    if (control_ != kNoControl && !SetControl(counting_)) return false;
    copies_.push_back(std::move(image));
    control_ = kNoControl;
    isOfText_ = false;
    return true;
}

std::string BlockCopier::CopyImage(Block image) {
    const bool isOwn = (GetImageFields(image).packed & kHasPalette) != 0;
    const int depth = isOwn ? DepthOfPacked(GetImageFields(image).packed) : from_.depth;
    if (MeansTheSame(image, ColoursOf(image, from_), depth)) {
        if (!isOwn && !StaysReadable(&image)) return kTooLittleMemory;
    } else if (colours_ == ForeignColours::kKeep || IsWholeWithoutPalette()) {
        if (!isOwn && !image.data) return "its picture can't be decoded, and its colours are not the document's";
        if (!isOwn && !GiveOwnPalette(&image)) return kTooLittleMemory;
    } else if (colours_ == ForeignColours::kRefuse || to_.depth == 0) {
        return OtherColours();
    } else if (std::string why = Convert(&image); !why.empty()) {
        return why;
    }
    return TakeImage(std::move(image)) ? "" : kTooLittleMemory;
}

// Its background is not drawn where its index is the transparent one.
std::string BlockCopier::CopyText(Block text) {
    if (to_.depth == 0) return "there is no global palette, whose colours a plain text block needs";
    PlainTextFields fields = GetPlainTextFields(text);
    const PlainTextFields old = fields;
    auto isSame = [&](uint8_t index) { return index < 1 << to_.depth && from_.colours[index] == to_.colours[index]; };
    if (!isSame(old.foregroundIndex) || !isSame(old.backgroundIndex)) {
        if (colours_ == ForeignColours::kRefuse) return OtherColours();
        if (colours_ == ForeignColours::kKeep) return "a plain text has no palette to keep its colours in";
        auto nearest = [&](uint8_t index) {
            const RgbTriple colour = from_.colours[index];
            return static_cast<uint8_t>(
                NearestColour(colour.red, colour.green, colour.blue, to_.colours, 1 << to_.depth));
        };
        fields.foregroundIndex = nearest(old.foregroundIndex);
        fields.backgroundIndex = nearest(old.backgroundIndex);
        PutPlainTextFields(&text, fields);
        if (!MarkChanged(&text)) return kTooLittleMemory;
    }
    if (control_ != kNoControl && !isOfText_ && (counting_.packed & kControlTransparent)) {
        ControlFields control = counting_;
        if (control.transparentIndex == old.backgroundIndex)
            control.transparentIndex = fields.backgroundIndex;
        else if (control.transparentIndex == fields.backgroundIndex)
            control.packed = static_cast<uint8_t>(control.packed & ~kControlTransparent);
        if (!SetControl(control)) return kTooLittleMemory;
    }
    isOfText_ = control_ != kNoControl;
    if (!OwnBytes(&text)) return kTooLittleMemory;
    copies_.push_back(std::move(text));
    return "";
}

std::string BlockCopier::CopyOne(const Block& original) {
    switch (original.kind) {
        case kHeaderBlock: return LoadStr(IDS_HEADER_FIXED);
        case kImageBlock: return CopyImage(original);
        case kPlainTextBlock: return CopyText(original);
        case kLoopBlock:
            if (HasLoopBlock(list_) || std::ranges::find(copies_, kLoopBlock, &Block::kind) != copies_.end())
                return LoadStr(IDS_SECOND_LOOP);
            break;
        case kControlBlock:
            control_ = static_cast<int>(copies_.size());
            counting_ = GetControlFields(original);
            isOfText_ = false;
            break;
        default: break;
    }
    Block copy = original;
    if (!OwnBytes(&copy)) return kTooLittleMemory;
    copies_.push_back(std::move(copy));
    return "";
}

std::string BlockCopier::Copy(std::span<const uint32_t> blocks) {
    for (uint32_t index : blocks)
        if (std::string why = CopyOne(other_.blocks[index]); !why.empty())
            return why == kTooLittleMemory ? why : "block " + std::to_string(index) + ": " + why;
    return "";
}

// The frames of the document with those of the other one between them: all images in the order of `made`.
std::vector<Look> LooksOfBoth(const BlockList& other, std::span<const uint32_t> blocks, const BlockList& list,
                              uint32_t at) {
    std::vector<uint32_t> frameOf(other.count);
    uint32_t frames = 0, own = 0;
    for (uint32_t index = 0; index < other.count; ++index)
        if (other.blocks[index].kind == kImageBlock) frameOf[index] = frames++;
    std::vector<Look> looks;
    for (uint32_t index = 0; index < list.count; ++index) {
        if (list.blocks[index].kind == kImageBlock) looks.push_back({&list, own++});
        if (index != at) continue;
        for (uint32_t copied : blocks)
            if (other.blocks[copied].kind == kImageBlock) looks.push_back({&other, frameOf[copied]});
    }
    return looks;
}

EditOutcome InsertCopies(const BlockList& other, std::span<const uint32_t> blocks, std::span<const Block> copies,
                         uint32_t at, Looks looks, BlockList* list) {
    std::vector<uint32_t> all(list->count);
    std::iota(all.begin(), all.end(), 0u);
    BlockList made;
    int selection = static_cast<int>(at);
    if (!TakeBlocks(*list, all, &made) || !InsertBlocks(&made, &selection, copies)) return EditOutcome::OutOfMemory();
    EditOutcome outcome;
    if (looks == Looks::kKept) {
        outcome = KeepScreen(*list, &made);
        if (outcome) outcome = KeepLooks(LooksOfBoth(other, blocks, *list, at), &made);
    }
    if (outcome) *list = std::move(made);
    return outcome;
}

}  // namespace

CopyOutcome CopyBlocks(const BlockList& other, std::span<const uint32_t> blocks, uint32_t at, ForeignColours colours,
                       Looks looks, BlockList* list) {
    CopyOutcome outcome;
    static_cast<EditOutcome&>(outcome) = WithinMemory([&] {
        if (at >= list->count) return EditOutcome::Refused("there is no block " + std::to_string(at));
        BlockCopier copier(other, colours, *list);
        const std::string why = copier.Copy(blocks);
        outcome.wantsChoice = copier.WantsChoice();
        if (!why.empty()) return EditOutcome::Refused(why);
        outcome.first = at + 1;
        outcome.copied = static_cast<uint32_t>(copier.Copies().size());
        return InsertCopies(other, blocks, copier.Copies(), at, looks, list);
    });
    return outcome;
}
