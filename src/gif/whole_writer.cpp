#include "gif/whole_writer.h"

#include <span>

#include "gif/block_writers.h"
#include "gif/descriptor.h"
#include "gif/identity_comment.h"
#include "gif/lzw_limits.h"
#include "gif/source_bytes.h"
#include "gif/sub_block_span.h"

namespace {

using Bytes = std::span<const uint8_t>;

bool Write(File& file, Bytes bytes) {
    return file.Write(bytes.data(), bytes.size());
}

bool WriteZeros(File& file, size_t count) {
    bool written = true;
    while (written && count-- > 0) written = WriteByte(file, 0) >= 0;
    return written;
}

// A cut colour table goes on in black.
bool WriteCutHeader(File& file, Bytes own) {
    constexpr size_t kPackedAt = 10;
    return Write(file, own) &&
           WriteZeros(file, kHeaderDescriptorBytes + TableBytesOfPacked(own[kPackedAt]) - own.size());
}

// Ends the chain of sub-blocks that starts at index `at`: a sub-block that is not whole becomes a shorter one.
bool WriteCutChain(File& file, Bytes own, size_t at) {
    size_t cut = WalkSubBlocks(own, at).cut;
    if (!Write(file, own.first(cut))) return false;
    if (cut + 1 < own.size()) {
        Bytes rest = own.subspan(cut + 1);
        if (WriteByte(file, static_cast<int>(rest.size())) < 0 || !Write(file, rest)) return false;
    }
    return WriteByte(file, 0) >= 0;
}

bool WriteCutImage(File& file, Bytes own) {
    size_t codeSizeAt = kImageHeadBytes + TableBytesOfPacked(own[kImageDescriptorBytes]);
    if (own.size() > codeSizeAt) return WriteCutChain(file, own, codeSizeAt + 1);
    return Write(file, own) && WriteZeros(file, codeSizeAt - own.size()) && WriteByte(file, kLeastCodeSize) >= 0 &&
           WriteByte(file, 0) >= 0;
}

bool WriteCut(File& file, uint16_t kind, Bytes own) {
    constexpr size_t kChainOfExtension = 2;
    if (kind == kHeaderBlock) return WriteCutHeader(file, own);
    return kind == kImageBlock ? WriteCutImage(file, own) : WriteCutChain(file, own, kChainOfExtension);
}

bool WriteEncodedHeader(File& file, const Block& header) {
    return file.Write(header.descriptor, kHeaderDescriptorBytes) &&
           WritePalette(file, header, GetHeaderFields(header).packed);
}

bool WriteEncoded(File& file, const Block& block) {
    switch (block.kind) {
        case kHeaderBlock: return WriteEncodedHeader(file, block);
        case kImageBlock: return WriteImageBlock(file, block, Manner::kWhole);
        case kControlBlock: return WriteControlBlock(file, block);
        case kPlainTextBlock: return WritePlainTextBlock(file, block, Manner::kWhole);
        case kApplicationBlock:
        case kBlockNamesBlock: return WriteApplicationBlock(file, block, Manner::kWhole);
        case kCommentBlock: return WriteCommentBlock(file, block, Manner::kWhole);
        case kLoopBlock: return WriteLoopBlock(file, block);
        case kUnknownBlock: return WriteUnknownBlock(file, block, Manner::kWhole);
        default: return true;
    }
}

bool WriteFileBytes(File& file, const FileBytes& kept) {
    return kept.bytes == 0 || file.WriteKept(kept.memory, kept.start, kept.bytes);
}

}  // namespace

bool WriteSource(File& file, const Block& block, bool isFollowed) {
    SourceLock source(block);
    if (!source || source.Own().empty()) return false;
    return block.isCutOff && isFollowed ? WriteCut(file, block.kind, source.Own()) : Write(file, source.Own());
}

bool WriteWholeBlock(File& file, const Block& block, bool isFollowed) {
    if (HasSource(block) && !(block.isCutOff && isFollowed))
        return file.WriteKept(block.aux, block.source.start, size_t{block.source.stray} + block.source.bytes);
    if (block.source.stray && !file.WriteKept(block.aux, block.source.start, block.source.stray)) return false;
    return HasSource(block) ? WriteSource(file, block, isFollowed) : WriteEncoded(file, block);
}

bool IsLastBlockFollowed(const BlockList& list) {
    return list.after.bytes || !(list.flags & kReadWhole);
}

bool WriteWholeDocument(const BlockList& list, File& file, const Identity* names) {
    const bool wasRead = (list.flags & kReadWhole) != 0;
    const bool isLastFollowed = names || IsLastBlockFollowed(list);
    if (!WriteFileBytes(file, list.before)) return false;
    for (const Block& block : list.All()) {
        bool isFollowed = isLastFollowed || &block != &list.All().back();
        if (!WriteWholeBlock(file, block, isFollowed)) return false;
    }
    if (names && !WriteIdentity(file, list, *names, Manner::kWhole)) return false;
    return wasRead ? WriteFileBytes(file, list.after) : WriteByte(file, kTrailer) >= 0;
}
