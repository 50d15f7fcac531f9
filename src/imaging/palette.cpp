#include "imaging/palette.h"

#include <algorithm>

#include "platform/memory.h"

const RgbTriples Palette::kBlack = {};

bool Palette::Set(std::span<const RgbTriple> colours) {
    auto made = ScratchMayBeHad() ? Shared<Table>::Make() : Shared<Table>();
    if (!made) return false;
    std::copy_n(colours.begin(), std::min<size_t>(colours.size(), kPaletteEntries), made->entries);
    table_ = made;
    return true;
}

bool Palette::SetEntry(size_t index, RgbTriple colour) {
    if ((!table_ || table_.IsShared()) && !Set({Colours(), kPaletteEntries})) return false;
    table_->entries[index] = colour;
    return true;
}
