#include "gif/first_image.h"

#include <string>

#include "gif/descriptor.h"
#include "gif/extension_reader.h"
#include "gif/gif_header.h"

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

Result<FirstImage> ReadFirstImage(File& file) {
    Block header;
    HeaderResult result = ReadGifHeader(file, &header);
    if (file.HasFailed()) return {Failure::kCantRead, file.Reason()};
    if (result == kHeaderNotGif) return Failure::kNotGif;
    if (result != kHeaderRead || !FindImage(file)) return Failure::kDamaged;
    Block image;
    bool wasRead = ReadImage(file, &image, PaletteOfHeader(header)) == kImageRead;
    if (file.HasFailed()) return {Failure::kCantRead, file.Reason()};
    if (!wasRead) return Failure::kDamaged;
    return FirstImage{image.data, DepthOfPacked(GetImageFields(image).packed)};
}

Result<FirstImage> ReadFirstImage(const std::string& path) {
    File file;
    if (!file.OpenForReading(path.c_str())) return {Failure::kCantOpen, file.Reason()};
    return ReadFirstImage(file);
}
