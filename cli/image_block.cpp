#include "cli/image_block.h"

#include "cli/complaints.h"

bool OpenImageBlock(const std::string& path, uint32_t index, const Options& options, Document* document, Block* image) {
    if (!document->Open(path, options) || !FindBlock(document->list, path, index, image)) return false;
    if (image->kind != kImageBlock) {
        Complain(path, "block " + std::to_string(index) + " is not an image");
        return false;
    }
    return true;
}
