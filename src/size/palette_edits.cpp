#include "size/palette_edits.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "gif/descriptor.h"
#include "gif/source_bytes.h"
#include "imaging/row_packer.h"

namespace {

using NewIndexes = std::array<int, kPaletteEntries>;

// Gives `image` the bytes that its descriptor and palette make with the codes of `old`, its former form. One whose
// bytes are not there, or that was cut off before its codes, is encoded instead. False when memory runs out.
bool KeepCodes(const Block& old, Block* image) {
    if (!HasSource(old)) return true;
    SourceLock source(old);
    if (!source) return false;
    const auto own = source.Own();
    const size_t codesAt =
        kImageHeadBytes + (own.size() < kImageHeadBytes ? 0 : TableBytesOfPacked(own[kImageHeadBytes - 1]));
    if (own.size() <= codesAt) return MarkChanged(image);
    const uint8_t packed = GetImageFields(*image).packed;
    const size_t stray = source.Stray().size(), table = TableBytesOfPacked(packed), codes = own.size() - codesAt;
    MemoryHandle memory = AllocateMemory(stray + kImageHeadBytes + table + codes);
    WriteLock to(&memory);
    if (!to) return false;
    uint8_t* next = std::copy_n(source.Stray().data(), stray, to.Bytes());
    *next++ = kImageIntroducer;
    next = std::copy_n(image->descriptor, kImageDescriptorBytes, next);
    if (table) memcpy(next, image->palette.Colours(), table);
    memcpy(next + table, own.data() + codesAt, codes);
    image->aux = memory;
    image->source = {0, static_cast<uint32_t>(stray), static_cast<uint32_t>(kImageHeadBytes + table + codes)};
    return true;
}

bool ResizeImageTable(Block* image, int depth) {
    Block edited = *image;
    ImageFields fields = GetImageFields(edited);
    fields.packed = WithDepth(fields.packed, depth);
    PutImageFields(&edited, fields);
    if (!KeepCodes(*image, &edited)) return false;
    *image = std::move(edited);
    return true;
}

// Where each used index goes; false when some colour is not there.
bool MapIndexes(const UsedIndexes& used, const Block& image, const GlobalPalette& global, int transparentIndex,
                NewIndexes* map) {
    const RgbTriple* own = image.palette.Colours();
    const RgbTriple* shared = global.colours.Colours();
    const int count = global.depth ? 1 << global.depth : 0;
    for (int index = 0; index < used.end; ++index) {
        int to = index;
        if (!used.of[static_cast<size_t>(index)]) continue;
        if (index != transparentIndex && (index >= count || own[index] != shared[index]))
            for (to = 0; to < count && (to == transparentIndex || own[index] != shared[to]);) ++to;
        if (to >= count) return false;
        (*map)[static_cast<size_t>(index)] = to;
    }
    return true;
}

bool IsIdentity(const UsedIndexes& used, const NewIndexes& map) {
    for (size_t index = 0; index < used.of.size(); ++index)
        if (used.of[index] && map[index] != static_cast<int>(index)) return false;
    return true;
}

MemoryHandle MapPixels(const MemoryHandle& image, const NewIndexes& map, const GlobalPalette& global) {
    ImageLock from(image);
    if (!from) return nullptr;
    MemoryHandle made = CreateImageBitmap(from->width, from->height, global.colours, global.depth);
    ImageWriteLock to(&made);
    const auto row = AllocateScratch(static_cast<uint64_t>(from->width) + 1);
    if (!to || !row) return nullptr;
    for (int y = 0; y < from->height; ++y) {
        UnpackRow(row.get(), ImageRow(from, y), from->width, from->bitCount);
        for (int x = 0; x < from->width; ++x)
            row[static_cast<size_t>(x)] = static_cast<uint8_t>(map[row[static_cast<size_t>(x)]]);
        PackRow(ImageRow(to, y), row.get(), from->width, to->bitCount);
    }
    return made;
}

}  // namespace

bool FindUsedIndexes(const Block& image, UsedIndexes* used) {
    *used = {};
    ImageLock bitmap(image.data);
    if (!bitmap || bitmap->bitCount > 8) return false;
    for (int y = 0; y < bitmap->height; ++y) {
        const uint8_t* row = ImageRow(bitmap, y);
        for (int x = 0; x < bitmap->width; ++x) used->of[IndexAt(row, x, bitmap->bitCount)] = true;
    }
    for (int index = 0; index < kPaletteEntries; ++index)
        if (used->of[static_cast<size_t>(index)]) used->end = index + 1;
    return true;
}

bool ResizeColourTable(Block* block, int colours) {
    const int depth = static_cast<int>(std::bit_width(static_cast<unsigned>(colours))) - 1;
    if (block->kind == kImageBlock) return ResizeImageTable(block, depth);
    HeaderFields fields = GetHeaderFields(*block);
    fields.packed = static_cast<uint8_t>(fields.packed & ~kHasPalette);
    if (colours) fields.packed = WithDepth(static_cast<uint8_t>(fields.packed | kHasPalette), depth);
    if (fields.packed == GetHeaderFields(*block).packed) return true;
    if (!MarkChanged(block)) return false;
    PutHeaderFields(block, fields);
    return true;
}

SharedTable UseGlobalTable(const GlobalPalette& global, int transparentIndex, Block* image) {
    ImageFields fields = GetImageFields(*image);
    if (!(fields.packed & kHasPalette)) return SharedTable::kHadNone;
    UsedIndexes used;
    NewIndexes map = {};
    if (!FindUsedIndexes(*image, &used)) return SharedTable::kNoPicture;
    if (!MapIndexes(used, *image, global, transparentIndex, &map) || global.depth == 0)
        return SharedTable::kLacksColours;
    Block edited = *image;
    edited.data = MapPixels(image->data, map, global);
    if (!edited.data) return SharedTable::kNoMemory;
    fields.packed = WithDepth(static_cast<uint8_t>(fields.packed & ~kHasPalette), global.depth);
    PutImageFields(&edited, fields);
    edited.palette.Clear();
    if (!(IsIdentity(used, map) ? KeepCodes(*image, &edited) : MarkChanged(&edited))) return SharedTable::kNoMemory;
    *image = std::move(edited);
    return SharedTable::kDone;
}
