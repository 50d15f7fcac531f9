#include "gif/source_bytes.h"

#include <cstring>

#include "gif/descriptor.h"

namespace {

constexpr size_t kPlaceBytes = 4;  // of an image's descriptor: left and top

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

// An image's bytes with its place as the descriptor has it now, in memory of their own.
bool PatchPlace(Block* image) {
    SourceLock source(*image);
    if (!source) return false;
    const size_t before = image->source.stray + 1;  // the introducer
    const size_t bytes = image->source.stray + size_t{image->source.bytes};
    MemoryHandle own = AllocateMemory(bytes);
    WriteLock copy(&own);
    if (!copy) return false;
    memcpy(copy.Bytes(), source.Stray().data(), bytes);
    memcpy(copy.Bytes() + before, image->descriptor, kPlaceBytes);
    image->aux = own;
    image->source.start = 0;
    return true;
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
    if (block->kind == kImageBlock && !block->data) return PatchPlace(block);
    block->source.bytes = 0;
    block->isCutOff = false;
    if (block->source.stray == 0) block->aux = nullptr;
    return true;
}

bool StoreEdited(BlockList* list, Block edited, uint32_t index, bool* differs) {
    if (index >= list->count) return false;
    *differs = !SameContent(edited, list->blocks[index]);
    return !*differs || (MarkChanged(&edited) && PutBlock(list, edited, index));
}
