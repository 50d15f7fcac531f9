#include "gif/first_image.h"

#include <string>

#include "gif/descriptor.h"
#include "gif/extension_reader.h"
#include "gif/gif_header.h"
#include "imaging/picture_reader.h"

namespace {

constexpr uint64_t kMostPictureFileBytes = uint64_t{1} << 30;

// Moves behind the introducer of the first image. False when there is none.
bool FindImage(File& file) {
    for (;;) {
        int introducer = ReadByte(file);
        if (introducer == kImageIntroducer) return true;
        if (introducer <= 0) return false;
        SkipExtension(file);
    }
}

Result<FirstImage> ReadOtherPicture(File& file) {
    size_t bytes = 0;
    const MemoryHandle content = file.ReadRest(kMostPictureFileBytes, &bytes);
    if (file.HasFailed()) return {Failure::kCantRead, file.Reason()};
    const MemoryLock lock(content);
    if (!lock) return Failure::kNoMemory;
    const Result<Picture> picture = ReadPicture({lock.Bytes(), bytes});
    if (!picture) return picture.Why();
    return MakePictureBitmap(*picture);
}

Result<FirstImage> ReadGifImage(File& file) {
    Block header;
    HeaderResult result = ReadGifHeader(file, &header);
    if (file.HasFailed()) return {Failure::kCantRead, file.Reason()};
    if (result == kHeaderNotGif) return Failure::kNotGif;
    if (result != kHeaderRead || !FindImage(file)) return Failure::kDamaged;
    Block image;
    bool wasRead = ReadImage(file, &image, PaletteOfHeader(header)) == kImageRead;
    if (file.HasFailed()) return {Failure::kCantRead, file.Reason()};
    if (!wasRead) return Failure::kDamaged;
    return FirstImage{image.data, DepthOfPacked(GetImageFields(image).packed), {}};
}

}  // namespace

bool HoldsOtherPicture(File& file) {
    uint8_t start[kPictureStartBytes];
    const size_t bytes = file.Read(start, sizeof start);
    file.Seek(0);
    return KindOfPicture({start, bytes}) != PictureKind::kOther;
}

Result<FirstImage> ReadFirstImage(File& file) {
    return HoldsOtherPicture(file) ? ReadOtherPicture(file) : ReadGifImage(file);
}

Result<FirstImage> ReadFirstImage(const std::string& path) {
    File file;
    if (!file.OpenForReading(path.c_str())) return {Failure::kCantOpen, file.Reason()};
    return ReadFirstImage(file);
}
