#include "imaging/apng_writer.h"

#include <cstring>

#include "imaging/file_signature.h"
#include "platform/checksum.h"

namespace {

constexpr size_t kTypeBytes = 4;
constexpr size_t kChunkFrame = 12;  // length, type, sum
constexpr uint16_t kHundredthsASecond = 100;
constexpr uint8_t kLeaveFrame = 0;    // when its time is over
constexpr uint8_t kReplaceUnder = 0;  // instead of drawing over it

// Numbers as PNG has them, the most significant byte first.
uint8_t* PutBig(uint8_t* to, uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) to[i] = static_cast<uint8_t>(value >> 8 * (bytes - 1 - i));
    return to + bytes;
}

uint32_t GetBig(const uint8_t* from) {
    return uint32_t{from[0]} << 24 | uint32_t{from[1]} << 16 | uint32_t{from[2]} << 8 | from[3];
}

struct Chunk {
    const char* type;  // four characters, no end
    std::span<const uint8_t> data;

    bool Is(const char* name) const { return memcmp(type, name, kTypeBytes) == 0; }
};

// Takes the chunk at the front of `rest`. False when there is none whole.
bool TakeChunk(std::span<const uint8_t>* rest, Chunk* chunk) {
    if (rest->size() < kChunkFrame) return false;
    const uint32_t length = GetBig(rest->data());
    if (length > rest->size() - kChunkFrame) return false;
    *chunk = {reinterpret_cast<const char*>(rest->data() + 4), rest->subspan(8, length)};
    *rest = rest->subspan(length + kChunkFrame);
    return true;
}

}  // namespace

bool ApngWriter::PutChunk(const char* type, std::span<const uint8_t> first, std::span<const uint8_t> rest) {
    uint8_t head[8], sum[4];
    PutBig(head, static_cast<uint32_t>(first.size() + rest.size()), 4);
    memcpy(head + 4, type, kTypeBytes);
    PutBig(sum, Crc32(rest, Crc32(first, Crc32({head + 4, kTypeBytes}))), 4);
    return file_.Write(head, sizeof head) && file_.Write(first.data(), first.size()) &&
           file_.Write(rest.data(), rest.size()) && file_.Write(sum, sizeof sum);
}

bool ApngWriter::Start(uint32_t frames, uint32_t plays) {
    frames_ = frames;
    plays_ = plays;
    return file_.Write(kPngSignature.data(), kPngSignature.size());
}

bool ApngWriter::PutAnimationControl() {
    uint8_t data[8];
    PutBig(PutBig(data, frames_, 4), plays_, 4);
    return PutChunk("acTL", data);
}

bool ApngWriter::PutFrameControl(const ApngFrame& frame) {
    uint8_t data[26];
    uint8_t* to = PutBig(data, sequence_++, 4);
    for (uint32_t number : {frame.width, frame.height, frame.left, frame.top}) to = PutBig(to, number, 4);
    for (uint16_t number : {frame.hundredths, kHundredthsASecond}) to = PutBig(to, number, 2);
    to[0] = kLeaveFrame;
    to[1] = kReplaceUnder;
    return PutChunk("fcTL", data);
}

// The first frame's data is that of a still picture, for programs that know no animation.
bool ApngWriter::PutImageData(std::span<const uint8_t> data) {
    if (added_ == 0) return PutChunk("IDAT", data);
    uint8_t number[4];
    PutBig(number, sequence_++, 4);
    return PutChunk("fdAT", number, data);
}

bool ApngWriter::AddFrame(std::span<const uint8_t> png, const ApngFrame& frame) {
    if (!StartsWith(png, kPngSignature)) return false;
    std::span<const uint8_t> rest = png.subspan(kPngSignature.size());
    bool hasData = false;
    for (Chunk chunk; TakeChunk(&rest, &chunk);) {
        bool written = true;
        if (chunk.Is("IDAT")) {
            written = (hasData || PutFrameControl(frame)) && PutImageData(chunk.data);
            hasData = true;
        } else if (added_ == 0 && chunk.Is("IHDR")) {
            written = PutChunk("IHDR", chunk.data) && PutAnimationControl();
        } else if (added_ == 0 && (chunk.Is("PLTE") || chunk.Is("tRNS"))) {
            written = PutChunk(chunk.type, chunk.data);
        }
        if (!written) return false;
    }
    ++added_;
    return hasData;
}

bool ApngWriter::Finish() {
    return added_ == frames_ && PutChunk("IEND", {});
}
