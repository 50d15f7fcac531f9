#include "gif/logical_screen.h"

#include <algorithm>

#include "gif/descriptor.h"

bool FitLogicalScreen(BlockList* list) {
    int right = 0;
    int bottom = 0;
    for (const Block& block : list->All()) {
        if (block.kind != kImageBlock) continue;
        ImageFields image = GetImageFields(block);
        right = std::max(right, image.left + image.width);
        bottom = std::max(bottom, image.top + image.height);
    }
    if (list->count == 0) return false;
    Block* header = &list->blocks[0];
    HeaderFields fields = GetHeaderFields(*header);
    // An image may lie so far out that its edge has no place in 16 bits; the widest screen is what remains.
    if (right) fields.screenWidth = static_cast<uint16_t>(std::min(right, 0xFFFF));
    if (bottom) fields.screenHeight = static_cast<uint16_t>(std::min(bottom, 0xFFFF));
    PutHeaderFields(header, fields);
    return true;
}
