// Any bytes as the source of one imported picture.
#include "gif/first_image.h"
#include "tests/fuzz/document_check.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    File file;
    file.OpenMemory(data, size);
    int depth = 0;
    OwnedMemory image(ReadFirstImage(file, &depth));
    if (!image) return 0;
    int bitCount = 0;
    assert(GetImageInfo(image.Get(), nullptr, nullptr, &bitCount, nullptr));
    assert(depth >= 1);
    assert(depth <= 8);
    assert(bitCount == BitCountForDepth(depth));
    return 0;
}
