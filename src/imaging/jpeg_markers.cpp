#include "imaging/jpeg_markers.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>

#include "imaging/picture.h"
#include "platform/bytes.h"

namespace {

using Bytes = std::span<const uint8_t>;

constexpr uint8_t kMarker = 0xFF;
constexpr uint8_t kStartOfScan = 0xDA;
constexpr uint8_t kEndOfImage = 0xD9;
constexpr uint8_t kApplication1 = 0xE1;
constexpr std::string_view kExifName{"Exif\0\0", 6};

// There is one marker for each way of coding; three that are among them mean other things.
bool IsStartOfFrame(uint8_t marker) {
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

struct Segment {
    uint8_t marker = 0;
    Bytes content;
};

// The segments of a JPEG file up to the first scan, whose data is no segment.
class Segments {
public:
    explicit Segments(Bytes file) : file_(file) {}

    // The next one, or nothing where the scan begins or the file makes no sense.
    std::optional<Segment> Next() {
        constexpr size_t kHeadBytes = 4;
        while (at_ + 1 < file_.size() && file_[at_] == kMarker && file_[at_ + 1] == kMarker) ++at_;  // filled up
        if (file_.size() < kHeadBytes || at_ > file_.size() - kHeadBytes || file_[at_] != kMarker) return std::nullopt;
        Segment segment;
        segment.marker = file_[at_ + 1];
        if (segment.marker == kStartOfScan) return std::nullopt;
        const size_t length = GetBigWord(&file_[at_ + 2]);  // itself included
        if (length < 2 || length > file_.size() - at_ - 2) return std::nullopt;
        segment.content = file_.subspan(at_ + kHeadBytes, length - 2);
        at_ += length + 2;
        return segment;
    }

    // Where the segments ended.
    size_t Position() const { return at_; }

private:
    Bytes file_;
    size_t at_ = 2;  // behind the marker that starts the file
};

// The numbers of a TIFF structure, in whose order of bytes it says at its start.
class TiffReader {
public:
    explicit TiffReader(Bytes tiff) : tiff_(tiff), isBig_(!tiff.empty() && tiff[0] == 'M') {}

    bool Has(uint64_t offset, uint64_t bytes) const { return offset <= tiff_.size() && bytes <= tiff_.size() - offset; }
    uint32_t Word(uint64_t offset) const {
        const uint8_t* at = &tiff_[static_cast<size_t>(offset)];
        return isBig_ ? GetBigWord(at) : GetWord(at);
    }
    uint32_t DoubleWord(uint64_t offset) const {
        const uint8_t* at = &tiff_[static_cast<size_t>(offset)];
        return isBig_ ? GetBigDoubleWord(at) : GetDoubleWord(at);
    }

private:
    Bytes tiff_;
    bool isBig_;
};

}  // namespace

bool HasEndMarker(Bytes file) {
    Segments segments(file);
    while (segments.Next()) {
    }
    constexpr uint8_t kEnd[] = {kMarker, kEndOfImage};
    const Bytes scans = file.subspan(std::min(segments.Position(), file.size()));
    return std::search(scans.begin(), scans.end(), std::begin(kEnd), std::end(kEnd)) != scans.end();
}

std::optional<JpegSize> SizeOfJpeg(Bytes file) {
    constexpr size_t kSizeBytes = 5;  // precision, height and width
    Segments segments(file);
    while (std::optional<Segment> segment = segments.Next())
        if (IsStartOfFrame(segment->marker) && segment->content.size() >= kSizeBytes)
            return JpegSize{GetBigWord(&segment->content[3]), GetBigWord(&segment->content[1])};
    return std::nullopt;
}

int JpegOrientation(Bytes file) {
    Segments segments(file);
    while (std::optional<Segment> segment = segments.Next()) {
        const Bytes content = segment->content;
        if (segment->marker == kApplication1 && content.size() >= kExifName.size() &&
            std::equal(kExifName.begin(), kExifName.end(), content.begin()))
            return TiffOrientation(content.subspan(kExifName.size()));
    }
    return kUpright;
}

int TiffOrientation(Bytes bytes) {
    constexpr uint64_t kHeadBytes = 8, kEntryBytes = 12;
    constexpr uint32_t kMagic = 42, kOrientationTag = 0x112, kTypeShort = 3;
    const TiffReader tiff(bytes);
    if (!tiff.Has(0, kHeadBytes) || bytes[0] != bytes[1] || (bytes[0] != 'I' && bytes[0] != 'M') ||
        tiff.Word(2) != kMagic)
        return kUpright;
    const uint64_t directory = tiff.DoubleWord(4);
    if (!tiff.Has(directory, 2)) return kUpright;
    const uint32_t entries = tiff.Word(directory);
    for (uint32_t i = 0; i < entries; ++i) {
        const uint64_t entry = directory + 2 + kEntryBytes * i;
        if (!tiff.Has(entry, kEntryBytes)) return kUpright;
        if (tiff.Word(entry) != kOrientationTag) continue;
        const uint32_t orientation = tiff.Word(entry + 8);
        const bool isValid = tiff.Word(entry + 2) == kTypeShort && orientation >= 1 && orientation <= 8;
        return isValid ? static_cast<int>(orientation) : kUpright;
    }
    return kUpright;
}
