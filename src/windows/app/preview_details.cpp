#include "windows/app/preview_details.h"

#include "gif/block_writers.h"
#include "gif/descriptor.h"
#include "gif/source_bytes.h"

namespace {

// Encoding more would be felt.
constexpr uint64_t kMostEncodedPixels = uint64_t{1} << 22;

struct Rectangle AreaOfImage(const Block& block) {
    if (block.kind != kImageBlock) return {};
    const ImageFields image = GetImageFields(block);
    return {image.left, image.top, image.left + image.width, image.top + image.height};
}

std::wstring Number(int64_t number) {
    return std::to_wstring(number);
}

std::wstring DescribeTime(const Frame& frame) {
    std::wstring text = L"Delay " + Number(frame.delay) + L"/100 s";
    if (frame.length != frame.delay) text += L" (played as " + Number(frame.length) + L")";
    return text;
}

std::wstring DescribeBytes(uint64_t bytes) {
    return bytes == kBytesNotCounted ? std::wstring() : L", " + std::to_wstring(bytes) + L" bytes";
}

}  // namespace

struct Rectangle AreaOfLine(const PlayedDocument& played, int line, uint32_t frame) {
    const Block& selected = played.Blocks().blocks[static_cast<uint32_t>(line)];
    if (selected.kind == kPlainTextBlock) {
        const PlainTextFields text = GetPlainTextFields(selected);
        return {text.left, text.top, text.left + text.gridWidth, text.top + text.gridHeight};
    }
    return AreaOfImage(played.Blocks().blocks[played.Played().Frames()[frame].block]);
}

uint64_t BytesOfFrame(const PlayedDocument& played, uint32_t frame) {
    const Block& block = played.Blocks().blocks[played.Played().Frames()[frame].block];
    if (HasSource(block)) return block.source.bytes;
    const struct Rectangle area = AreaOfImage(block);
    File file;
    if (area.Pixels() > kMostEncodedPixels) return kBytesNotCounted;
    if (block.kind != kImageBlock || !block.data || !file.CreateMemory()) return kBytesNotCounted;
    return WriteImageBlock(file, block) && !file.HasFailed() ? file.Written().size() : kBytesNotCounted;
}

std::wstring DescribeLine(const PlayedDocument& played, int line, uint32_t frame, uint64_t bytes) {
    const struct Rectangle area = AreaOfLine(played, line, frame);
    std::wstring text = L"Frame " + Number(frame + 1) + L" of " + Number(played.FrameCount()) + L"\r\n";
    text += L"At " + Number(area.left) + L", " + Number(area.top) + L": " + Number(area.Width()) + L" x " +
            Number(area.Height()) + L"\r\n";
    return text + DescribeTime(played.Played().Frames()[frame]) + DescribeBytes(bytes);
}
