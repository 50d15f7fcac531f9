#include "size/block_sizes.h"

#include <algorithm>
#include <span>

#include "gif/application_data.h"
#include "gif/descriptor.h"
#include "gif/source_bytes.h"
#include "gif/whole_writer.h"

namespace {

using Bytes = std::span<const uint8_t>;

// The bytes in the sub-blocks of a chain, without those that tell their lengths. The last one may be cut off.
uint64_t CountInSubBlocks(Bytes chain) {
    uint64_t count = 0;
    while (!chain.empty() && chain[0] != 0) {
        const size_t length = std::min<size_t>(chain[0], chain.size() - 1);
        count += length;
        chain = chain.subspan(1 + length);
    }
    return count;
}

// Takes an image's bytes apart, which end anywhere when its file did.
void SplitImage(Bytes own, BlockSizes* sizes) {
    if (own.size() <= kImageHeadBytes) return;
    const uint8_t packed = own[kImageHeadBytes - 1];
    sizes->palette = std::min(TableBytesOfPacked(packed), own.size() - kImageHeadBytes);
    const size_t codeSizeAt = kImageHeadBytes + static_cast<size_t>(sizes->palette);
    if (codeSizeAt < own.size()) sizes->pixels = CountInSubBlocks(own.subspan(codeSizeAt + 1));
}

bool HasText(const Block& block) {
    return HasBlockData(block) || block.kind == kCommentBlock || block.kind == kPlainTextBlock ||
           block.kind == kBlockNamesBlock;
}

// Takes the block's bytes apart. False when memory runs out.
bool Split(const Block& block, Bytes own, BlockSizes* sizes) {
    BlockData data;
    if (HasText(block) && !GetBlockData(block, &data)) return false;
    sizes->data = data.count;
    if (block.kind == kHeaderBlock && own.size() > kHeaderDescriptorBytes)
        sizes->palette = own.size() - kHeaderDescriptorBytes;
    if (block.kind == kImageBlock) SplitImage(own, sizes);
    sizes->overhead = own.size() - sizes->Own();
    return true;
}

}  // namespace

bool MeasureBlock(const Block& block, bool isFollowed, BlockSizes* sizes) {
    if (HasSource(block) && !(block.isCutOff && isFollowed)) {
        SourceLock source(block);
        sizes->stray = block.source.stray;
        return source && Split(block, source.Own(), sizes);
    }
    File written;
    if (!written.CreateMemory() || !WriteWholeBlock(written, block, isFollowed)) return false;
    sizes->stray = block.source.stray;
    return Split(block, written.Written().subspan(block.source.stray), sizes);
}

BlockSizes& BlockSizes::operator+=(const BlockSizes& other) {
    palette += other.palette;
    pixels += other.pixels;
    data += other.data;
    overhead += other.overhead;
    stray += other.stray;
    return *this;
}

BlockSizes DocumentSizes::Sum() const {
    BlockSizes sum;
    for (const BlockSizes& block : blocks) sum += block;
    return sum;
}

uint64_t DocumentSizes::Total() const {
    const BlockSizes sum = Sum();
    return before + sum.stray + sum.Own() + after;
}

bool MeasureDocument(const BlockList& list, DocumentSizes* sizes) {
    *sizes = {};
    sizes->before = list.before.bytes;
    sizes->after = (list.flags & kReadWhole) ? list.after.bytes : 1;  // or the trailer alone
    sizes->blocks.resize(list.count);
    for (uint32_t index = 0; index < list.count; ++index) {
        const bool isFollowed = index + 1 < list.count || IsLastBlockFollowed(list);
        if (!MeasureBlock(list.blocks[index], isFollowed, &sizes->blocks[index])) return false;
    }
    return true;
}
