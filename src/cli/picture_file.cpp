#include "cli/picture_file.h"

#include "animation/canvas_png.h"
#include "cli/bmp_file.h"
#include "cli/complaints.h"
#include "cli/output_file.h"

namespace {

bool EndsInPng(const std::string& path) {
    constexpr std::string_view kEnding = ".png";
    if (path.size() < kEnding.size()) return false;
    std::string ending = path.substr(path.size() - kEnding.size());
    for (char& letter : ending) letter = static_cast<char>(letter >= 'A' && letter <= 'Z' ? letter | 0x20 : letter);
    return ending == kEnding;
}

bool EncodeBitmap(const MemoryHandle& image, ByteBuffer* png) {
    Block block;
    block.data = image;
    RgbTriples colours = {};
    {
        ImageLock bitmap(image);
        if (!bitmap) return false;
        GetImagePalette(bitmap, colours);
    }
    return EncodeImage(block, colours, kNoTransparency, {}, png);
}

bool WritePngFile(const MemoryHandle& image, const std::string& path) {
    std::optional<ImageInfo> info = GetImageInfo(image);
    if (info && (info->width == 0 || info->height == 0)) {
        Complain(path, "can't be written: a PNG file has at least one pixel");
        return false;
    }
    ByteBuffer png;
    if (!EncodeBitmap(image, &png)) {
        Complain(path, "out of memory");
        return false;
    }
    return WriteOutputFile(path, [&](File& file) { return file.Write(png.Content().data(), png.Content().size()); });
}

}  // namespace

bool WritePictureFile(const MemoryHandle& image, const std::string& path) {
    return EndsInPng(path) ? WritePngFile(image, path) : WriteBmpFile(image, path);
}
