// A palette as a value.
#pragma once

#include <cstddef>
#include <span>

#include "imaging/image_bitmap.h"
#include "platform/shared.h"

// 256 colours that copies share. A palette without any is all black and takes no memory.
class Palette {
public:
    // The 256 entries: readable until this palette is changed.
    const RgbTriple* Colours() const { return table_ ? table_->entries : kBlack; }
    operator const RgbTriple*() const { return Colours(); }

    bool HasColours() const { return static_cast<bool>(table_); }  // false: none were ever set

    // Takes over the colours, 256 at most; the entries behind them become black. False, with nothing changed, when
    // memory runs out.
    [[nodiscard]] bool Set(std::span<const RgbTriple> colours);
    [[nodiscard]] bool SetEntry(size_t index, RgbTriple colour);  // of the 256
    void Clear() { table_ = {}; }

private:
    struct Table {
        RgbTriples entries = {};
    };
    static const RgbTriples kBlack;

    Shared<Table> table_;
};
