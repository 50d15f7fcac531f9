#include "gif/application_data.h"

#include <algorithm>
#include <cstring>

#include "gif/descriptor.h"
#include "gif/source_bytes.h"

namespace {

using ByteSpan = std::span<const uint8_t>;

constexpr size_t kIntroducerBytes = 2;  // with the label
constexpr char kXmpApplication[] = "XMP DataXMP";
constexpr uint8_t kApplicationBytes = kIdentifierBytes + kAuthenticationBytes;

// What ends an XMP packet in a GIF file, after Adobe's "XMP: Storage in Files": 1, 255, 254, ... 0, 0. A reader that
// takes the packet's characters for lengths of sub-blocks lands somewhere in it, and each of its bytes leads to the
// last one.
constexpr size_t kXmpEndingBytes = 258;

// A packet that can't go in as it is: the ending would show in longer sub-blocks if the packet contained it.
constexpr size_t kLongestOfXmp = 100;

uint8_t XmpEndingByte(size_t index) {
    if (index == 0) return 1;
    return static_cast<uint8_t>(index < kXmpEndingBytes - 1 ? kXmpEndingBytes - 2 - index : 0);
}

bool HasXmpEnding(ByteSpan chain) {
    if (chain.size() < kXmpEndingBytes) return false;
    ByteSpan ending = chain.last(kXmpEndingBytes);
    for (size_t i = 0; i < kXmpEndingBytes; ++i)
        if (ending[i] != XmpEndingByte(i)) return false;
    return true;
}

bool IsXmp(const Block& block) {
    return block.kind == kApplicationBlock &&
           memcmp(block.descriptor + kIdentifierOffset, kXmpApplication, kApplicationBytes) == 0;
}

// Calls `take` with the bytes of each sub-block. A chain that is cut off ends with the bytes.
template <typename Take>
void ForEachSubBlock(ByteSpan chain, Take take) {
    size_t at = 0;
    while (at < chain.size() && chain[at] != 0) {
        const size_t bytes = std::min<size_t>(chain[at], chain.size() - at - 1);
        take(chain.subspan(at + 1, bytes));
        at += 1 + bytes;
    }
}

// Joins the sub-blocks in `to`, which has room for `most` bytes. Returns how many there are in all.
size_t JoinSubBlocks(ByteSpan chain, uint8_t* to, size_t most) {
    size_t joined = 0;
    ForEachSubBlock(chain, [&](ByteSpan part) {
        const size_t fits = joined < most ? std::min(part.size(), most - joined) : 0;
        if (fits) memcpy(to + joined, part.data(), fits);
        joined += part.size();
    });
    return joined;
}

// Whether a sub-block of its own, before those of the data, tells what the data is for.
bool HasFixedPart(uint16_t kind) {
    return kind == kApplicationBlock || kind == kBlockNamesBlock || kind == kPlainTextBlock;
}

// What of a block's own bytes is its chain of data: behind the label and the fixed part.
ByteSpan ChainOf(const Block& block, ByteSpan own) {
    size_t start = std::min(kIntroducerBytes, own.size());
    if (HasFixedPart(block.kind) && start < own.size() && own[start] != 0)
        start = std::min(start + 1 + own[start], own.size());
    return own.subspan(start);
}

bool Copy(ByteSpan from, BlockData* data) {
    BlockData copy = {AllocateScratch(from.size()), from.size()};
    if (!copy.bytes) return false;
    std::copy(from.begin(), from.end(), copy.bytes.get());
    *data = std::move(copy);
    return true;
}

bool Join(ByteSpan chain, BlockData* data) {
    BlockData joined = {AllocateScratch(chain.size()), 0};
    if (!joined.bytes) return false;
    joined.count = JoinSubBlocks(chain, joined.bytes.get(), chain.size());
    *data = std::move(joined);
    return true;
}

// Makes the source of a block that is to hold `data`. What stands before the block in its file stays there.
class SourceMaker {
public:
    SourceMaker(const Block& block, ByteSpan data) : block_(block), data_(data), isRawXmp_(CanBeRawXmp()) {}

    // The bytes of the whole source; none when memory runs out.
    MemoryHandle Make(SourcePlace* place) {
        SourceLock old(block_);
        ByteSpan stray = old ? old.Stray() : ByteSpan{};
        const size_t bytes = stray.size() + kIntroducerBytes + FixedBytes() + ChainBytes();
        MemoryHandle memory = AllocateMemory(bytes);
        WriteLock lock(&memory);
        if (!lock) return nullptr;
        next_ = lock.Bytes();
        Put(stray);
        PutHead();
        chain_ = {next_, ChainBytes()};
        isRawXmp_ ? PutRawXmp() : PutSubBlocks();
        *place = {0, static_cast<uint32_t>(stray.size()), static_cast<uint32_t>(bytes - stray.size())};
        return SetText() ? memory : nullptr;
    }

    // The text that a reader takes from what was made.
    const Block& Text() const { return text_; }

private:
    // Without a zero byte on the steps through the packet that readers take.
    bool CanBeRawXmp() const {
        if (!IsXmp(block_)) return false;
        size_t at = 0;
        while (at < data_.size() && data_[at] != 0) at += size_t{1} + data_[at];
        return at >= data_.size();
    }

    size_t FixedBytes() const { return block_.kind == kApplicationBlock ? 1 + kApplicationBytes : 0; }
    // A block of unknown type whose label is a known one is unknown for its too short fixed part. It stays so.
    size_t LongestPart() const {
        if (IsXmp(block_)) return kLongestOfXmp;
        if (block_.kind != kUnknownBlock) return kMostSubBlockBytes;
        switch (block_.descriptor[0]) {
            case kControlLabel: return kControlDescriptorBytes - 3;
            case kPlainTextLabel: return kPlainTextDescriptorBytes - 2;
            case kApplicationLabel: return kApplicationDescriptorBytes - 2;
            default: return kMostSubBlockBytes;
        }
    }
    size_t ChainBytes() const {
        if (isRawXmp_) return data_.size() + kXmpEndingBytes;
        return data_.size() + (data_.size() + LongestPart() - 1) / LongestPart() + 1;
    }

    void Put(uint8_t byte) { *next_++ = byte; }
    void Put(ByteSpan bytes) { next_ = std::copy(bytes.begin(), bytes.end(), next_); }

    void PutHead() {
        Put(static_cast<uint8_t>(kExtensionIntroducer));
        if (block_.kind != kApplicationBlock) return Put(block_.descriptor[0]);
        Put(static_cast<uint8_t>(kApplicationLabel));
        Put(kApplicationBytes);
        Put(ByteSpan(block_.descriptor + kIdentifierOffset, kApplicationBytes));
    }

    void PutRawXmp() {
        Put(data_);
        for (size_t i = 0; i < kXmpEndingBytes; ++i) Put(XmpEndingByte(i));
    }

    void PutSubBlocks() {
        for (ByteSpan left = data_; !left.empty(); left = left.subspan(std::min(LongestPart(), left.size()))) {
            const size_t part = std::min(LongestPart(), left.size());
            Put(static_cast<uint8_t>(part));
            Put(left.first(part));
        }
        Put(uint8_t{0});
    }

    bool SetText() {
        std::unique_ptr<uint8_t[]> text = AllocateScratch(kMaxTextBytes);
        if (!text) return false;
        const size_t bytes = std::min<size_t>(JoinSubBlocks(chain_, text.get(), kMaxTextBytes), kMaxTextBytes);
        return SetBlockText(&text_, text.get(), static_cast<uint32_t>(bytes));
    }

    const Block& block_;
    ByteSpan data_;
    bool isRawXmp_;
    uint8_t* next_ = nullptr;
    ByteSpan chain_;
    Block text_;
};

}  // namespace

bool HasBlockData(const Block& block) {
    return block.kind == kApplicationBlock || block.kind == kUnknownBlock;
}

bool GetBlockData(const Block& block, BlockData* data) {
    if (!HasSource(block)) {
        MemoryLock text(block.data);
        return Copy(text ? ByteSpan(text.Bytes(), block.dataLength) : ByteSpan{}, data);
    }
    SourceLock source(block);
    if (!source) return false;
    ByteSpan chain = ChainOf(block, source.Own());
    if (IsXmp(block) && HasXmpEnding(chain)) return Copy(chain.first(chain.size() - kXmpEndingBytes), data);
    return Join(chain, data);
}

bool SetBlockData(Block* block, std::span<const uint8_t> data) {
    BlockData old;
    if (!GetBlockData(*block, &old)) return false;
    if (std::ranges::equal(old.All(), data)) return true;
    SourceMaker maker(*block, data);
    SourcePlace place;
    MemoryHandle source = maker.Make(&place);
    if (!source) return false;
    block->aux = source;
    block->source = place;
    block->isCutOff = false;
    block->data = maker.Text().data;
    block->dataLength = maker.Text().dataLength;
    if (block->kind == kApplicationBlock) block->descriptor[0] = kApplicationBytes;
    return true;
}
