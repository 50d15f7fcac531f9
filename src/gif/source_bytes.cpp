#include "gif/source_bytes.h"

#include <cstring>

#include "gif/descriptor.h"

namespace {

// Fields of a block that can change without anything behind them: where they stand in its descriptor and in its bytes.
struct FixedFields {
    size_t inDescriptor, inSource, bytes;
};
constexpr FixedFields kImagePlace = {0, 1, 4};        // left and top
constexpr FixedFields kPlainTextFields = {1, 3, 12};  // all

bool SameText(const Block& a, const Block& b) {
    if (a.dataLength != b.dataLength) return false;
    if (a.data == b.data || a.dataLength == 0) return true;
    MemoryLock one(a.data);
    MemoryLock other(b.data);
    return one && other && memcmp(one.Bytes(), other.Bytes(), a.dataLength) == 0;
}

// The colour tables of the bitmaps only say how they are shown.
bool SamePixels(const Block& a, const Block& b) {
    if (a.data == b.data) return true;
    ImageLock one(a.data);
    ImageLock other(b.data);
    if (!one || !other || one->width != other->width || one->height != other->height ||
        one->bitCount != other->bitCount)
        return false;
    auto bytes = size_t{ImageRowBytes(one)} * static_cast<size_t>(one->height);
    return memcmp(ImagePixels(one), ImagePixels(other), bytes) == 0;
}

// What the writer takes of a palette: the entries that the packed byte counts.
bool SamePalette(const Block& a, const Block& b, uint8_t packed) {
    if (!(packed & kHasPalette)) return true;
    auto bytes = sizeof(RgbTriple) * static_cast<size_t>(ColoursOfPacked(packed));
    return memcmp(a.palette.Colours(), b.palette.Colours(), bytes) == 0;
}

// Gives the block its bytes in memory of their own, with these fields as the descriptor has them now.
bool Patch(Block* block, const FixedFields& fields) {
    SourceLock source(*block);
    if (!source) return false;
    const size_t bytes = block->source.stray + size_t{block->source.bytes};
    MemoryHandle own = AllocateMemory(bytes);
    WriteLock copy(&own);
    if (!copy) return false;
    memcpy(copy.Bytes(), source.Stray().data(), bytes);
    memcpy(copy.Bytes() + block->source.stray + fields.inSource, block->descriptor + fields.inDescriptor, fields.bytes);
    block->aux = own;
    block->source.start = 0;
    return true;
}

// The fields that alone differ from the old form of a block that still has its bytes; null where more does.
const FixedFields* FindOnlyChange(const Block& edited, const Block& old) {
    if (!HasSource(edited) || (edited.kind != kImageBlock && edited.kind != kPlainTextBlock)) return nullptr;
    const FixedFields& fields = edited.kind == kImageBlock ? kImagePlace : kPlainTextFields;
    if (edited.source.bytes < fields.inSource + fields.bytes) return nullptr;
    Block rest = edited;
    memcpy(rest.descriptor + fields.inDescriptor, old.descriptor + fields.inDescriptor, fields.bytes);
    return SameContent(rest, old) ? &fields : nullptr;
}

}  // namespace

bool SameContent(const Block& a, const Block& b) {
    if (a.kind != b.kind || memcmp(a.descriptor, b.descriptor, kDescriptorBytes) != 0) return false;
    if (a.kind == kHeaderBlock) return SamePalette(a, b, GetHeaderFields(a).packed);
    if (a.kind == kImageBlock) return SamePalette(a, b, GetImageFields(a).packed) && SamePixels(a, b);
    return SameText(a, b);
}

bool MarkChanged(Block* block) {
    if (!HasSource(*block)) return true;
    if (block->kind == kImageBlock && !block->data) return Patch(block, kImagePlace);
    block->source.bytes = 0;
    block->isCutOff = false;
    if (block->source.stray == 0) block->aux = nullptr;
    return true;
}

bool StoreEdited(BlockList* list, Block edited, uint32_t index, bool* differs) {
    if (index >= list->count) return false;
    const Block& old = list->blocks[index];
    *differs = !SameContent(edited, old);
    if (!*differs) return true;
    const FixedFields* fields = FindOnlyChange(edited, old);
    return (fields ? Patch(&edited, *fields) : MarkChanged(&edited)) && PutBlock(list, edited, index);
}
