#include "gif/text_reader.h"

namespace {

// The editor's text field knows line ends of two bytes alone, and no other control bytes.
constexpr bool kQuirkCommentsNormalised = true;

// Some writers end an empty comment twice. A second terminator is taken along, anything else is left.
constexpr bool kQuirkEmptyCommentTakesSecondZero = true;

// Collects bytes up to the most that a block keeps.
class TextBuffer {
public:
    TextBuffer() : bytes_(AllocateScratch(kMaxTextBytes)) {}
    explicit operator bool() const { return bytes_ != nullptr; }
    void Add(int byte) {
        if (length_ < kMaxTextBytes) bytes_[length_++] = static_cast<uint8_t>(byte);
    }
    uint32_t Length() const { return length_; }
    bool MoveInto(Block* block) const { return SetBlockText(block, bytes_.get(), length_); }

private:
    std::unique_ptr<uint8_t[]> bytes_;
    uint32_t length_ = 0;
};

template <typename Take>
void ForEachTextByte(File& file, Take take) {
    int left;
    while ((left = ReadByte(file)) > 0) {
        for (int byte; left > 0 && (byte = ReadByte(file)) >= 0; --left) take(byte);
    }
}

}  // namespace

bool ReadText(File& file, Block* block) {
    TextBuffer text;
    if (!text) return false;
    ForEachTextByte(file, [&](int byte) { text.Add(byte); });
    return text.MoveInto(block);
}

bool ReadComment(File& file, Block* block) {
    TextBuffer text;
    if (!text) return false;
    ForEachTextByte(file, [&](int byte) {
        if (!kQuirkCommentsNormalised || byte >= 32 || byte == 13) text.Add(byte);
        if (kQuirkCommentsNormalised && byte == 13) text.Add(10);
    });
    if (kQuirkEmptyCommentTakesSecondZero && text.Length() == 0) {
        uint64_t here = file.Position();
        if (ReadByte(file) > 0) file.Seek(here);
    }
    return text.MoveInto(block);
}
