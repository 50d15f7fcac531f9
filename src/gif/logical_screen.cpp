#include "gif/logical_screen.h"

#include <algorithm>

#include "gif/descriptor.h"
#include "gif/source_bytes.h"

namespace {

// The screen is the extent of the images: what it had beyond them goes.
constexpr bool kQuirkScreenShrinks = true;

// An image may lie so far out that its edge has no place in 16 bits; the widest screen is what remains. Without images
// the screen stays.
void FitEdge(int extent, uint16_t* edge) {
    if (extent > 0 && (kQuirkScreenShrinks || extent > *edge)) *edge = static_cast<uint16_t>(std::min(extent, 0xFFFF));
}

}  // namespace

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
    const Block& header = list->blocks[0];
    HeaderFields fields = GetHeaderFields(header);
    FitEdge(right, &fields.screenWidth);
    FitEdge(bottom, &fields.screenHeight);
    Block fitted = header;
    PutHeaderFields(&fitted, fields);
    bool differs;
    return StoreEdited(list, fitted, 0, &differs);
}
