#include "size/strip.h"

#include <algorithm>
#include <vector>

#include "animation/animation.h"

uint32_t StripBlocks(std::span<const uint16_t> kinds, BlockList* list) {
    std::vector<uint32_t> gone;
    for (uint32_t index = 0; index < list->count; ++index) {
        const Block& block = list->blocks[index];
        if (RepeatsOf(block) == Animation::kNoLoop && std::ranges::find(kinds, block.kind) != kinds.end())
            gone.push_back(index);
    }
    RemoveBlocks(list, gone);
    return static_cast<uint32_t>(gone.size());
}
