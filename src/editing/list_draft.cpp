#include "editing/list_draft.h"

#include <algorithm>

#include "gif/source_bytes.h"

namespace {

bool StartLike(const BlockList& list, BlockList* made) {
    if (!CreateBlockList(made)) return false;
    made->flags = list.flags;
    made->before = list.before;
    made->after = list.after;
    return true;
}

void LeaveStrayBytes(Block* block) {
    block->source.start += block->source.stray;
    block->source.stray = 0;
    if (!HasSource(*block)) block->aux = nullptr;
}

}  // namespace

bool TakeBlocks(const BlockList& list, std::span<const uint32_t> order, BlockList* made) {
    if (!StartLike(list, made)) return false;
    std::vector<bool> isTaken(list.count);
    for (uint32_t index : order) {
        Block block = list.blocks[index];
        if (isTaken[index]) LeaveStrayBytes(&block);
        isTaken[index] = true;
        if (!AppendBlock(made, std::move(block))) return false;
    }
    RenumberBlocks(made);
    return true;
}

bool ListDraft::Replace(uint32_t index, Block edited) {
    if (!SameContent(edited, list_.blocks[index]) && !MarkChanged(&edited)) return false;
    replaced_[index] = std::move(edited);
    return true;
}

bool ListDraft::Make(BlockList* made) const {
    BlockList draft;
    if (!StartLike(list_, &draft)) return false;
    for (uint32_t index = 0; index < list_.count; ++index) {
        auto inserted = inserted_.find(index);
        if (inserted != inserted_.end())
            for (const Block& block : inserted->second)
                if (!AppendBlock(&draft, block)) return false;
        auto replaced = replaced_.find(index);
        if (!AppendBlock(&draft, replaced == replaced_.end() ? list_.blocks[index] : replaced->second)) return false;
    }
    if ((draft.flags & kReadWhole) && !HasExtensions(list_) && HasExtensions(draft)) SignAsSecondVersion(&draft);
    RenumberBlocks(&draft);
    *made = std::move(draft);
    return true;
}
