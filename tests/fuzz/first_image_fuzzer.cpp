// Any bytes as the source of one imported picture.
#include "gif/first_image.h"
#include "tests/fuzz/document_check.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    File file;
    file.OpenMemory(data, size);
    Result<FirstImage> image = ReadFirstImage(file);
    if (!image) return 0;
    std::optional<ImageInfo> info = GetImageInfo(image->bitmap);
    assert(info);
    assert(image->depth >= 1);
    assert(image->depth <= 8 || image->depth == 24);
    assert(info->bitCount == BitCountForDepth(image->depth));
    return 0;
}
