#include "size/advice.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <functional>

#include "animation/animation.h"
#include "gif/descriptor.h"
#include "gif/source_bytes.h"
#include "gif/whole_writer.h"
#include "size/block_sizes.h"
#include "size/palette_edits.h"

namespace {

constexpr char kColourProfile[] = "ICCRGBG1012";  // identifier and authentication code of the block that has one

// Of an edit that was tried on one image.
enum class Tried : uint8_t {
    kDone,
    kNotForIt,
    kNoMemory,
};

// An image of the document, and what is known of it.
struct ImageTurn {
    uint32_t block;
    size_t ordinal;  // among the images
    int transparentIndex;
    UsedIndexes used;
    uint64_t bytes;  // that it takes now
};

// "image:0,image:2-4" for numbers in rising order.
std::string SelectionOf(const std::vector<size_t>& ordinals) {
    std::string text;
    for (size_t i = 0; i < ordinals.size();) {
        size_t end = i + 1;
        while (end < ordinals.size() && ordinals[end] == ordinals[end - 1] + 1) ++end;
        text.append(i ? ",image:" : "image:").append(std::to_string(ordinals[i]));
        if (end > i + 1) text.append("-").append(std::to_string(ordinals[end - 1]));
        i = end;
    }
    return text;
}

// The least table that holds so many entries.
int TableFor(int entries) {
    return std::max(2, static_cast<int>(std::bit_ceil(static_cast<unsigned>(entries))));
}

// Whether the block, though of a kind that players skip, changes what some of them show.
bool IsHeeded(const Block& block) {
    return RepeatsOf(block) != Animation::kNoLoop ||
           (block.kind == kApplicationBlock &&
            memcmp(block.descriptor + kIdentifierOffset, kColourProfile, kIdentifierBytes + kAuthenticationBytes) == 0);
}

Tried DropInterlacing(const GlobalPalette&, const ImageTurn&, Block* image) {
    ImageFields fields = GetImageFields(*image);
    if (!(fields.packed & kImageInterlaced)) return Tried::kNotForIt;
    fields.packed = static_cast<uint8_t>(fields.packed & ~kImageInterlaced);
    PutImageFields(image, fields);
    return MarkChanged(image) ? Tried::kDone : Tried::kNoMemory;
}

Tried EncodeAnew(const GlobalPalette&, const ImageTurn&, Block* image) {
    return MarkChanged(image) ? Tried::kDone : Tried::kNoMemory;
}

Tried ShareTable(const GlobalPalette& global, const ImageTurn& turn, Block* image) {
    const SharedTable answer = UseGlobalTable(global, turn.transparentIndex, image);
    if (answer == SharedTable::kNoMemory) return Tried::kNoMemory;
    return answer == SharedTable::kDone ? Tried::kDone : Tried::kNotForIt;
}

// What may be done to one image or to several.
struct ImageEdit {
    const char* value;  // of "set"
    const char* what;   // in front of the images
    Tried (*apply)(const GlobalPalette& global, const ImageTurn& turn, Block* image);
};
constexpr ImageEdit kImageEdits[] = {
    {"interlaced=no", "drop the interlacing of ", DropInterlacing},
    {"encoding=new", "encode anew ", EncodeAnew},
    {"palette=global", "drop the own palette of ", ShareTable},
};

// Blocks that may be left out.
struct Deletion {
    uint16_t kind;
    const char* selection;  // all of the kind
    const char* what;
    const char* loses;
};
constexpr Deletion kDeletions[] = {
    {kCommentBlock, "comment", "delete the comments", "their texts"},
    {kPlainTextBlock, "plaintext", "delete the plain texts", "their texts, which browsers do not show"},
    {kApplicationBlock, "application", "delete the data of other applications", "that data"},
    {kBlockNamesBlock, "names", "delete the names of blocks", "these names"},
    {kUnknownBlock, "unknown", "delete the blocks of unknown types", "their data"},
};

class Adviser {
public:
    Adviser(const BlockList& list, const ReadReport& report, std::vector<Advice>* advice)
        : list_(list), advice_(*advice), global_(FindGlobalPalette(list)), isDamaged_(list.count) {
        for (const Damage& damage : report.damages)
            if (damage.block >= 0 && !IsHarmless(damage)) isDamaged_[static_cast<size_t>(damage.block)] = true;
    }

    // False when memory runs out.
    bool Run() {
        if (!animation_.Open(list_, Texts::kLeftOut)) return false;
        if (!TakeImages() || !TryImages() || !TryGlobalTable()) return false;
        for (const Deletion& deletion : kDeletions)
            if (!TryDelete(deletion)) return false;
        std::ranges::stable_sort(advice_, std::greater(), &Advice::gain);
        return true;
    }

private:
    bool IsFollowed(uint32_t block) const { return block + 1 < list_.count || isLastFollowed_; }

    bool TakeImages() {
        size_t ordinal = 0;
        for (const Frame& frame : animation_.Frames()) {
            const Block& image = list_.blocks[frame.block];
            if (image.kind != kImageBlock) continue;
            ImageTurn turn = {frame.block, ordinal++, frame.transparentIndex, {}, 0};
            BlockSizes sizes;
            if (!MeasureBlock(image, IsFollowed(frame.block), &sizes)) return false;
            turn.bytes = sizes.Own();
            const bool isKnown = image.data && !isDamaged_[frame.block];
            allKnown_ = allKnown_ && isKnown;
            if (isKnown && !FindUsedIndexes(image, &turn.used)) return false;
            if (isKnown) turns_.push_back(turn);
        }
        return true;
    }

    bool TryImages() {
        for (const ImageEdit& edit : kImageEdits)
            if (!TryEverywhere(edit)) return false;
        return std::ranges::all_of(turns_, [this](const ImageTurn& turn) { return TryOwnTable(turn); });
    }

    // The edit on each image alone, and on all that it makes smaller.
    bool TryEverywhere(const ImageEdit& edit) {
        std::vector<size_t> ordinals;
        uint64_t sum = 0;
        for (const ImageTurn& turn : turns_) {
            Block image = list_.blocks[turn.block];
            const Tried tried = edit.apply(global_, turn, &image);
            uint64_t gain = 0;
            if (tried == Tried::kNoMemory || !FindGain(turn, image, &gain)) return false;
            if (tried != Tried::kDone || gain == 0) continue;
            ordinals.push_back(turn.ordinal);
            sum += gain;
            AddSet(gain, SelectionOf({turn.ordinal}), edit.what + SelectionOf({turn.ordinal}), edit.value);
        }
        if (ordinals.size() > 1)
            AddSet(sum, SelectionOf(ordinals), edit.what + std::to_string(ordinals.size()) + " images", edit.value);
        return true;
    }

    bool FindGain(const ImageTurn& turn, const Block& image, uint64_t* gain) const {
        BlockSizes sizes;
        if (!MeasureBlock(image, IsFollowed(turn.block), &sizes)) return false;
        *gain = turn.bytes > sizes.Own() ? turn.bytes - sizes.Own() : 0;
        return true;
    }

    void AddSet(uint64_t gain, const std::string& blocks, const std::string& what, const std::string& value,
                const char* loses = "") {
        advice_.push_back({gain, what, loses, "set", blocks, value});
    }

    bool TryOwnTable(const ImageTurn& turn) {
        Block image = list_.blocks[turn.block];
        const uint8_t packed = GetImageFields(image).packed;
        const int colours = TableFor(turn.used.end);
        if (!(packed & kHasPalette) || colours >= ColoursOfPacked(packed)) return true;
        uint64_t gain = 0;
        if (!ResizeColourTable(&image, colours) || !FindGain(turn, image, &gain)) return false;
        const std::string name = SelectionOf({turn.ordinal});
        if (gain) AddSet(gain, name, "drop unused colours of " + name, "colours=" + std::to_string(colours));
        return true;
    }

    // How many of the global colours something needs; 0 when nothing needs any. The background is View's.
    int NeededOfGlobal() const {
        int needed = 0;
        for (const ImageTurn& turn : turns_)
            if (!(GetImageFields(list_.blocks[turn.block]).packed & kHasPalette))
                needed = std::max(needed, turn.used.end);
        for (const Block& block : list_.All()) {
            if (block.kind != kPlainTextBlock) continue;
            const PlainTextFields fields = GetPlainTextFields(block);
            needed = std::max({needed, fields.foregroundIndex + 1, fields.backgroundIndex + 1});
        }
        return needed;
    }

    bool TryGlobalTable() {
        if (global_.depth == 0 || list_.count == 0 || !allKnown_ || isDamaged_[0]) return true;
        Block header = list_.blocks[0];
        const int needed = NeededOfGlobal();
        const int colours = needed ? TableFor(std::max(needed, GetHeaderFields(header).backgroundIndex + 1)) : 0;
        if (colours >= 1 << global_.depth || header.kind != kHeaderBlock) return true;
        BlockSizes before, after;
        const bool isFollowed = IsFollowed(0);
        if (!MeasureBlock(header, isFollowed, &before) || !ResizeColourTable(&header, colours) ||
            !MeasureBlock(header, isFollowed, &after))
            return false;
        if (after.Own() < before.Own())
            AddSet(before.Own() - after.Own(), "header",
                   colours ? "drop unused global colours" : "drop the global palette, which nothing uses",
                   "colours=" + std::to_string(colours), colours ? "" : "the background colour");
        return true;
    }

    bool TryDelete(const Deletion& deletion) {
        std::vector<uint32_t> gone;
        std::string numbers;
        bool isAll = true;
        for (uint32_t index = 0; index < list_.count; ++index) {
            if (list_.blocks[index].kind != deletion.kind) continue;
            if (IsHeeded(list_.blocks[index])) {
                isAll = false;
                continue;
            }
            gone.push_back(index);
            numbers.append(numbers.empty() ? "" : ",").append(std::to_string(index));
        }
        if (gone.empty()) return true;
        BlockList rest;
        DocumentSizes before, after;
        if (!CopyBlockList(list_, &rest)) return false;
        RemoveBlocks(&rest, gone);
        if (!MeasureDocument(list_, &before) || !MeasureDocument(rest, &after)) return false;
        if (after.Total() < before.Total())
            advice_.push_back({before.Total() - after.Total(), deletion.what, deletion.loses, "delete",
                               isAll ? deletion.selection : numbers, ""});
        return true;
    }

    const BlockList& list_;
    std::vector<Advice>& advice_;
    const GlobalPalette global_;
    const bool isLastFollowed_ = IsLastBlockFollowed(list_);
    std::vector<bool> isDamaged_;
    Animation animation_;
    std::vector<ImageTurn> turns_;
    bool allKnown_ = true;  // no image had to be left alone
};

}  // namespace

bool FindAdvice(const BlockList& list, const ReadReport& report, std::vector<Advice>* advice) {
    advice->clear();
    return Adviser(list, report, advice).Run();
}
