#include "cli/save_warnings.h"

#include <algorithm>
#include <numeric>

#include "cli/complaints.h"
#include "gif/descriptor.h"

namespace {

constexpr int kFurthestEdge = 65535;

// Two zero bytes end such a text, and the second one the document. Of an empty comment readers take both.
bool EndsTheDocument(const Block& block) {
    bool isText = block.kind == kPlainTextBlock || block.kind == kApplicationBlock || block.kind == kCommentBlock ||
                  block.kind == kUnknownBlock;
    bool isEmptyComment = block.kind == kCommentBlock && block.dataLength == 0;
    return isText && block.data && block.dataLength % 255 == 0 && !isEmptyComment;
}

bool ReachesTooFar(const Block& block) {
    ImageFields image = GetImageFields(block);
    return block.kind == kImageBlock &&
           (image.left + image.width > kFurthestEdge || image.top + image.height > kFurthestEdge);
}

// The order of interlaced rows visits rows that so few do not have (RowWalk).
bool LosesRows(const Block& block) {
    ImageFields image = GetImageFields(block);
    return block.kind == kImageBlock && (image.packed & kImageInterlaced) && image.height >= 2 && image.height <= 4;
}

struct SaveLoss {
    bool (*strikes)(const Block& block);
    const char* what;
    bool inClassicOnly;
};

constexpr SaveLoss kLosses[] = {
    {EndsTheDocument, "a text whose length 255 divides ends the document when it is read; blocks behind it are lost",
     true},
    {ReachesTooFar, "an image that reaches beyond 65535 pixels is refused by other programs", false},
    {LosesRows, "an interlaced image of 2 to 4 rows loses rows", true},
};

// One line for all blocks that it strikes, with the number of the first.
template <typename Strikes>
void Warn(const BlockList& list, const std::string& path, Strikes strikes, const std::string& what) {
    uint32_t first = 0;
    uint32_t count = 0;
    for (uint32_t index = 0; index < list.count; ++index)
        if (strikes(list.blocks[index]) && count++ == 0) first = index;
    if (count == 0) return;
    std::string more = count > 1 ? " and " + std::to_string(count - 1) + " more" : "";
    Complain(path, "warning: block " + std::to_string(first) + more + ": " + what);
}

}  // namespace

void WarnOfLosses(const BlockList& list, const std::string& path, Manner manner) {
    for (const SaveLoss& loss : kLosses)
        if (manner == Manner::kClassic || !loss.inClassicOnly) Warn(list, path, loss.strikes, loss.what);
}

TouchedBlocks BlocksFrom(uint32_t first, uint32_t count) {
    TouchedBlocks blocks(count);
    std::iota(blocks.begin(), blocks.end(), first);
    return blocks;
}

void WarnOfImagesBeyondScreen(const BlockList& list, const std::string& path, const TouchedBlocks& touched) {
    const Block* header = FindHeader(list);
    if (!header || touched.empty()) return;
    const HeaderFields screen = GetHeaderFields(*header);
    std::vector<bool> isTouched(list.count, std::ranges::find(touched, 0u) != touched.end());
    for (uint32_t index : touched) isTouched[index] = true;
    auto isBeyond = [&](const Block& block) {
        auto index = static_cast<uint32_t>(&block - list.blocks.get());
        const ImageFields image = GetImageFields(block);
        return block.kind == kImageBlock && isTouched[index] &&
               (image.left + image.width > screen.screenWidth || image.top + image.height > screen.screenHeight);
    };
    Warn(list, path, isBeyond,
         "an image that reaches beyond the screen of " + std::to_string(screen.screenWidth) + " x " +
             std::to_string(screen.screenHeight) + " (--fit-screen makes room)");
}
