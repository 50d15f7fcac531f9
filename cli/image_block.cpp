#include "cli/image_block.h"

#include "cli/complaints.h"

bool OpenImageBlock(const std::string& path, const std::string& index, Document* document, Block* image) {
    if (document->Open(path) != kReadDone) return false;
    uint32_t number;
    if (!FindBlock(document->list, path, index, image, &number)) return false;
    if (image->kind != kImageBlock) {
        Complain(path, "block " + index + " is not an image");
        return false;
    }
    return true;
}
