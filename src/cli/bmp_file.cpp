#include "cli/bmp_file.h"

#include "cli/complaints.h"
#include "cli/output_file.h"
#include "imaging/image_bitmap.h"
#include "platform/bytes.h"

namespace {

constexpr size_t kBmpHeaderBytes = 14;

void PutDoubleWord(uint8_t* to, uint32_t value) {
    PutWord(to, value);
    PutWord(to + 2, value >> 16);
}

bool WriteBmp(File& file, ConstLockedBitmap bitmap) {
    auto pixelStart = static_cast<uint32_t>(ImagePixels(bitmap) - reinterpret_cast<const uint8_t*>(bitmap));
    uint32_t bitmapBytes = pixelStart + bitmap->imageBytes;
    uint8_t header[kBmpHeaderBytes] = {'B', 'M'};
    PutDoubleWord(header + 2, kBmpHeaderBytes + bitmapBytes);
    PutDoubleWord(header + 10, kBmpHeaderBytes + pixelStart);
    return file.Write(header, sizeof header) && file.Write(bitmap, bitmapBytes);
}

}  // namespace

bool WriteBmpFile(const MemoryHandle& image, const std::string& path) {
    ImageLock bitmap(image);
    if (!bitmap) {
        Complain(path, "out of memory");
        return false;
    }
    return WriteOutputFile(path, [&bitmap](File& file) { return WriteBmp(file, bitmap); });
}
