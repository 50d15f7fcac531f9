#include "gif/first_image.h"

#include <string>

#include "gif/descriptor.h"
#include "gif/extension_reader.h"
#include "gif/gif_header.h"
#include "platform/prompts.h"

namespace {

// Moves behind the introducer of the first image. False when there is none.
bool FindImage(File& file) {
    for (;;) {
        int introducer = ReadByte(file);
        if (introducer == kImageIntroducer) return true;
        if (introducer <= 0) return false;
        SkipExtension(file);
    }
}

}  // namespace

MemoryHandle ReadFirstImage(File& file, int* depth) {
    Block header = {};
    if (ReadGifHeader(file, &header) != kHeaderRead || !FindImage(file)) return nullptr;
    uint8_t packed = GetHeaderFields(header).packed;
    int globalDepth = (packed & kHasPalette) ? DepthOfPacked(packed) : 0;
    Block image = {};
    bool wasRead = ReadImage(file, &image, header.palette, globalDepth) == kImageRead;
    OwnedMemory bitmap(image.data);
    if (!wasRead || file.HasFailed()) return nullptr;
    *depth = DepthOfPacked(GetImageFields(image).packed);
    return bitmap.Release();
}

MemoryHandle ReadFirstImage(WindowHandle owner, const char* path, int* depth) {
    std::string chosen;
    if (!path) {
        if (!AskForGifFile(owner, &chosen)) return nullptr;
        path = chosen.c_str();
    }
    File file;
    return file.OpenForReading(path) ? ReadFirstImage(file, depth) : nullptr;
}
