#include "editing/field_changes.h"

#include <algorithm>
#include <new>

#include "editing/block_values.h"
#include "gif/descriptor.h"
#include "gif/source_bytes.h"
#include "platform/text_encoding.h"

namespace {

using Changes = std::vector<FieldChange>;
using ByteSpan = std::span<const uint8_t>;

std::string CountOf(uint64_t count, const char* unit) {
    if (count == 0) return "none";
    return std::to_string(count) + " " + unit + (count == 1 ? "" : "s");
}

void CompareValues(const Block& old, const Block& fresh, Changes* changes) {
    const std::vector<BlockValue> before = GetBlockValues(old), after = GetBlockValues(fresh);
    for (size_t i = 0; i < std::min(before.size(), after.size()); ++i)
        if (before[i].value != after[i].value) changes->push_back({before[i].field, before[i].value, after[i].value});
}

void CompareNames(const Block& old, const Block& fresh, Changes* changes) {
    const std::string before = GetBlockName(old).value_or(""), after = GetBlockName(fresh).value_or("");
    if (before != after) changes->push_back({"name", Utf8FromWindows1252(before), Utf8FromWindows1252(after)});
}

void CompareBytes(const char* field, ByteSpan old, ByteSpan fresh, Changes* changes) {
    if (std::ranges::equal(old, fresh)) return;
    FieldChange change = {field, CountOf(old.size(), "byte"), CountOf(fresh.size(), "byte")};
    if (old.size() == fresh.size()) {
        change.total = old.size();
        for (size_t i = 0; i < old.size(); ++i) change.differing += old[i] != fresh[i];
    }
    changes->push_back(change);
}

std::string TextOf(const BlockData& data) {
    return Utf8FromWindows1252({reinterpret_cast<const char*>(data.bytes.get()), data.count});
}

void CompareTexts(const Block& old, const Block& fresh, Changes* changes) {
    BlockData before, after;
    if (!GetBlockBytes(old, &before) || !GetBlockBytes(fresh, &after)) throw std::bad_alloc();
    if (!HasBlockText(old)) return CompareBytes("data", before.All(), after.All(), changes);
    if (!std::ranges::equal(before.All(), after.All())) changes->push_back({"text", TextOf(before), TextOf(after)});
}

void ComparePalettes(const Block& old, const Block& fresh, Changes* changes) {
    const int before = CountOwnColours(old), after = CountOwnColours(fresh);
    FieldChange change = {"palette", CountOf(static_cast<uint64_t>(before), "colour"),
                          CountOf(static_cast<uint64_t>(after), "colour")};
    if (before == after) {
        for (int i = 0; i < before; ++i) change.differing += old.palette.Colours()[i] != fresh.palette.Colours()[i];
        change.total = static_cast<uint64_t>(before);
    }
    if (before != after || change.differing) changes->push_back(change);
}

std::string SizeOf(ConstLockedBitmap bitmap) {
    return bitmap ? std::to_string(bitmap->width) + " x " + std::to_string(bitmap->height) : "none";
}

uint64_t CountDiffering(ConstLockedBitmap old, ConstLockedBitmap fresh) {
    uint64_t differing = 0;
    for (int y = 0; y < old->height; ++y) {
        if (old->bitCount == fresh->bitCount &&
            std::equal(ImageRow(old, y), ImageRow(old, y) + ImageRowBytes(old), ImageRow(fresh, y)))
            continue;
        for (int x = 0; x < old->width; ++x) differing += GetImagePixel(old, x, y) != GetImagePixel(fresh, x, y);
    }
    return differing;
}

// What two pictures that can't be decoded are made of.
void CompareCodes(const Block& old, const Block& fresh, Changes* changes) {
    SourceLock before(old), after(fresh);
    if (!before || !after) return;
    auto codes = [](ByteSpan own) { return own.subspan(std::min<size_t>(kImageHeadBytes, own.size())); };
    CompareBytes("data", codes(before.Own()), codes(after.Own()), changes);
}

void ComparePixels(const Block& old, const Block& fresh, Changes* changes) {
    if (!old.data && !fresh.data) return CompareCodes(old, fresh, changes);
    if (old.data == fresh.data) return;
    ImageLock before(old.data), after(fresh.data);
    if ((old.data && !before) || (fresh.data && !after)) throw std::bad_alloc();
    FieldChange change = {"pixels", SizeOf(before), SizeOf(after)};
    if (change.before == change.after) {
        change.differing = CountDiffering(before, after);
        change.total = static_cast<uint64_t>(before->width) * static_cast<uint64_t>(before->height);
        if (change.differing == 0) return;
    }
    changes->push_back(change);
}

void CompareStray(const Block& old, const Block& fresh, Changes* changes) {
    SourceLock before(old), after(fresh);
    if ((old.aux && !before) || (fresh.aux && !after)) throw std::bad_alloc();
    CompareBytes("stray", before ? before.Stray() : ByteSpan(), after ? after.Stray() : ByteSpan(), changes);
}

}  // namespace

// The same bytes say the same, also where there was no memory to see what.
std::vector<FieldChange> CompareFields(const Block& old, const Block& fresh) {
    Changes changes;
    if (!HasSource(old) || !HasSource(fresh) || !SameSourceBytes(old, fresh)) {
        CompareValues(old, fresh, &changes);
        CompareTexts(old, fresh, &changes);
        ComparePalettes(old, fresh, &changes);
        if (old.kind == kImageBlock) ComparePixels(old, fresh, &changes);
    }
    CompareNames(old, fresh, &changes);
    CompareStray(old, fresh, &changes);
    return changes;
}

void CompareFileBytes(const char* name, const FileBytes& old, const FileBytes& fresh,
                      std::vector<FieldChange>* changes) {
    MemoryLock before(old.memory), after(fresh.memory);
    if ((old.memory && !before) || (fresh.memory && !after)) throw std::bad_alloc();
    auto bytesOf = [](const MemoryLock& lock, const FileBytes& where) {
        return lock ? ByteSpan(lock.Bytes() + where.start, where.bytes) : ByteSpan();
    };
    CompareBytes(name, bytesOf(before, old), bytesOf(after, fresh), changes);
}

uint32_t BytesOf(const Block& block) {
    return block.source.bytes;
}

bool SameSourceBytes(const Block& old, const Block& fresh) {
    if (!HasSource(old) || !HasSource(fresh)) return true;
    SourceLock before(old), after(fresh);
    if (!before || !after) throw std::bad_alloc();
    return std::ranges::equal(before.Own(), after.Own());
}
