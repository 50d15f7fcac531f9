#include "editing/block_operations.h"

#include <algorithm>
#include <numeric>

#include "animation/animation.h"
#include "editing/keep_looks.h"
#include "editing/list_draft.h"
#include "gif/descriptor.h"
#include "gif/source_bytes.h"
#include "texts/string_ids.h"
#include "texts/strings.h"

namespace {

constexpr int kMostScreen = 65535;

bool HasKind(const BlockList& list, std::span<const uint32_t> blocks, uint16_t kind) {
    return std::ranges::any_of(blocks, [&](uint32_t index) { return list.blocks[index].kind == kind; });
}

std::vector<bool> Marked(const BlockList& list, std::span<const uint32_t> blocks) {
    std::vector<bool> marks(list.count);
    for (uint32_t index : blocks) marks[index] = true;
    return marks;
}

// The images of a new order as they look in the old one.
std::vector<Look> LooksOf(const BlockList& old, std::span<const uint32_t> order) {
    std::vector<uint32_t> frameOf(old.count);
    uint32_t frames = 0;
    for (uint32_t index = 0; index < old.count; ++index)
        if (old.blocks[index].kind == kImageBlock) frameOf[index] = frames++;
    std::vector<Look> looks;
    for (uint32_t index : order)
        if (old.blocks[index].kind == kImageBlock) looks.push_back({&old, frameOf[index]});
    return looks;
}

// All blocks but the marked ones, and the number of those up to `at`, but at least the first one: it is the header.
std::vector<uint32_t> Others(const std::vector<bool>& marks, uint32_t at, size_t* upTo) {
    std::vector<uint32_t> others;
    for (uint32_t index = 0; index < marks.size(); ++index) {
        if (!marks[index]) others.push_back(index);
        if (index == at) *upTo = others.size();
    }
    *upTo = std::min(std::max<size_t>(*upTo, 1), others.size());
    return others;
}

EditOutcome InsertOrder(const std::vector<bool>& marks, std::span<const uint32_t> blocks, uint32_t at, Looks looks,
                        BlockList* list) {
    if (at >= list->count) return EditOutcome::Refused("there is no block " + std::to_string(at));
    size_t place = 0;
    std::vector<uint32_t> order = Others(marks, at, &place);
    order.insert(order.begin() + static_cast<std::ptrdiff_t>(place), blocks.begin(), blocks.end());
    return ReorderBlocks(order, looks, list);
}

}  // namespace

EditOutcome KeepScreen(const BlockList& old, BlockList* list) {
    Animation before, after;
    if (!before.Open(old, Texts::kLeftOut) || !after.Open(*list, Texts::kLeftOut)) return EditOutcome::OutOfMemory();
    if (before.Screen() == after.Screen() || list->count == 0 || list->blocks[0].kind != kHeaderBlock) return {};
    if (before.Width() > kMostScreen || before.Height() > kMostScreen)
        return EditOutcome::Refused("its screen is as large as the first image, which is too large for another one");
    Block header = list->blocks[0];
    HeaderFields fields = GetHeaderFields(header);
    fields.screenWidth = static_cast<uint16_t>(before.Width());
    fields.screenHeight = static_cast<uint16_t>(before.Height());
    PutHeaderFields(&header, fields);
    bool differs;
    return StoreEdited(list, header, 0, &differs) ? EditOutcome() : EditOutcome::OutOfMemory();
}

EditOutcome ReorderBlocks(std::span<const uint32_t> order, Looks looks, BlockList* list) {
    return WithinMemory([&] {
        BlockList made;
        if (!TakeBlocks(*list, order, &made)) return EditOutcome::OutOfMemory();
        EditOutcome outcome;
        if (looks == Looks::kKept) {
            outcome = KeepScreen(*list, &made);
            if (outcome) outcome = KeepLooks(LooksOf(*list, order), &made);
        }
        if (outcome) *list = std::move(made);
        return outcome;
    });
}

EditOutcome MoveBlocks(std::span<const uint32_t> blocks, uint32_t at, Looks looks, BlockList* list) {
    if (HasKind(*list, blocks, kHeaderBlock)) return EditOutcome::Refused("the header can't be moved");
    return WithinMemory([&] { return InsertOrder(Marked(*list, blocks), blocks, at, looks, list); });
}

EditOutcome DuplicateBlocks(std::span<const uint32_t> blocks, uint32_t at, Looks looks, BlockList* list) {
    if (HasKind(*list, blocks, kHeaderBlock)) return EditOutcome::Refused(LoadStr(IDS_HEADER_FIXED));
    if (HasKind(*list, blocks, kLoopBlock)) return EditOutcome::Refused(LoadStr(IDS_SECOND_LOOP));
    return WithinMemory([&] { return InsertOrder(Marked(*list, {}), blocks, at, looks, list); });
}

EditOutcome DeleteBlocks(std::span<const uint32_t> blocks, Looks looks, BlockList* list) {
    if (HasKind(*list, blocks, kHeaderBlock)) return EditOutcome::Refused(LoadStr(IDS_HEADER_FIXED));
    return WithinMemory([&] {
        size_t place = 0;
        return ReorderBlocks(Others(Marked(*list, blocks), 0, &place), looks, list);
    });
}
