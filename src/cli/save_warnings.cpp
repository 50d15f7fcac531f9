#include "cli/save_warnings.h"

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

struct Loss {
    bool (*strikes)(const Block& block);
    const char* what;
};

constexpr Loss kLosses[] = {
    {EndsTheDocument, "a text whose length 255 divides ends the document when it is read; blocks behind it are lost"},
    {ReachesTooFar, "an image that reaches beyond 65535 pixels is refused by other programs"},
    {LosesRows, "an interlaced image of 2 to 4 rows loses rows"},
};

void Warn(const BlockList& list, const Loss& loss, const std::string& path) {
    uint32_t first = 0;
    uint32_t count = 0;
    for (uint32_t index = 0; index < list.count; ++index)
        if (loss.strikes(list.blocks[index]) && count++ == 0) first = index;
    if (count == 0) return;
    std::string more = count > 1 ? " and " + std::to_string(count - 1) + " more" : "";
    Complain(path, "warning: block " + std::to_string(first) + more + ": " + loss.what);
}

}  // namespace

void WarnOfLosses(const BlockList& list, const std::string& path) {
    for (const Loss& loss : kLosses) Warn(list, loss, path);
}
