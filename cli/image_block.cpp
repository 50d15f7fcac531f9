#include "cli/image_block.h"

#include "cli/options.h"

bool OpenImageBlock(const std::string& path, const std::string& index, Document* document, Block* image) {
    if (document->Open(path) != kReadDone) return false;
    unsigned number = 0;
    if (!ParseNumber(index, UINT32_MAX, &number) || !GetBlock(document->list, image, number)) {
        Complain(path, "no block " + index);
        return false;
    }
    if (image->kind != kImageBlock) {
        Complain(path, "block " + index + " is not an image");
        return false;
    }
    return true;
}
