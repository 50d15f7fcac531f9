// The thorough LZW decoder: needs memory for one row only and takes any amount of data.
#pragma once

#include <memory>

#include "gif/linear_decoder.h"
#include "gif/sub_blocks.h"
#include "platform/memory.h"

// Each dictionary entry is the code of the string before its last pixel, and that pixel.
class ChainedDecoder {
public:
    // Takes memory for rows of `width` pixels. False when there is none.
    [[nodiscard]] bool Prepare(int width) {
        width_ = static_cast<size_t>(width);
        memory_ = AllocateScratch(width_ + sizeof(Tables));
        return memory_ != nullptr;
    }

    // Decodes the chain of sub-blocks at which `file` stands and calls storeRow(pixels) for every whole row, one byte a
    // pixel. Images without pixels have no rows; their data is read all the same. False when a code can't occur.
    // `codeSize`: 1 to kMostWholeCodeSize; of pixels above 255 the low bits count.
    template <typename StoreRow>
    bool Decode(File& file, int codeSize, Manner manner, StoreRow storeRow) {
        auto* tables = reinterpret_cast<Tables*>(memory_.get());
        uint8_t* row = memory_.get() + sizeof(Tables);
        size_t& x = rest_;
        x = 0;
        auto emit = [&](uint8_t pixel) {
            if (width_ == 0) return;
            row[x] = pixel;
            if (++x < width_) return;
            storeRow(static_cast<const uint8_t*>(row));
            x = 0;
        };

        const unsigned clearCode = 1u << codeSize;
        CodeStream stream(file, manner);
        CodeStream::Bits in;
        Dictionary state = FreshDictionary(codeSize);
        for (unsigned code; TakeCode(stream, &in, state.width, &code) && code != clearCode + 1;) {
            if (code > state.next || (code == state.next && !state.hasPrevious)) return false;
            if (code == clearCode)
                state = FreshDictionary(codeSize);
            else
                Expand(tables, &state, code, clearCode, emit);
        }
        return true;
    }

    // What the last Decode left: the first `RestCount()` pixels of a row that is not whole.
    const uint8_t* Rest() const { return memory_.get() + sizeof(Tables); }
    size_t RestCount() const { return rest_; }

private:
    struct Tables {
        uint16_t prefix[kMostCodes];
        uint8_t suffix[kMostCodes];
        uint8_t stack[kMostCodes + 1];
    };
    struct Dictionary {
        unsigned next;   // the entry to be made next
        unsigned width;  // bits of a code
        bool hasPrevious;
        uint16_t previous;   // the last code
        uint8_t firstPixel;  // of its string
    };

    static Dictionary FreshDictionary(int codeSize) {
        return {(1u << codeSize) + 2, static_cast<unsigned>(codeSize) + 1, false, 0, 0};
    }

    // Emits the string of `code` and learns from it.
    template <typename Emit>
    static void Expand(Tables* tables, Dictionary* state, unsigned code, unsigned clearCode, Emit emit) {
        unsigned depth = 0;
        unsigned rest = code;
        if (code == state->next) {
            tables->stack[depth++] = state->firstPixel;
            rest = state->previous;
        }
        for (; rest >= clearCode; rest = tables->prefix[rest]) tables->stack[depth++] = tables->suffix[rest];
        state->firstPixel = static_cast<uint8_t>(rest);
        emit(state->firstPixel);
        while (depth) emit(tables->stack[--depth]);

        if (state->hasPrevious && state->next < kMostCodes) {
            tables->prefix[state->next] = state->previous;
            tables->suffix[state->next] = state->firstPixel;
            if (++state->next >= 1u << state->width && state->width < kMostCodeBits) ++state->width;
        }
        state->previous = static_cast<uint16_t>(code);
        state->hasPrevious = true;
    }

    size_t width_ = 0;
    size_t rest_ = 0;
    std::unique_ptr<uint8_t[]> memory_;
};
