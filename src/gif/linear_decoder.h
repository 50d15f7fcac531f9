// The fast LZW decoder, for images whose data fits the image: all pixels in a row, one byte each.
#pragma once

#include <cstdint>
#include <memory>

#include "gif/lzw_limits.h"
#include "gif/manner.h"
#include "platform/file.h"
#include "platform/memory.h"

// Every string of the dictionary is the string of some earlier code and the pixel that followed it, and so stands
// already, in one piece, among the decoded pixels. A dictionary entry is therefore just a place and a length, and
// decoding a code is one copy.
class LinearDecoder {
public:
    enum Outcome {
        kDone,     // end code or end of data
        kCorrupt,  // a code that can't occur; the pixels before it stand
        kSurplus,  // there are more pixels than room
    };

    // Takes memory for `room` pixels (1 or more, below 2^31). False when there is none.
    [[nodiscard]] bool Prepare(uint64_t room);

    // Decodes the chain of sub-blocks at which `file` stands. `codeSize`: 1 to kMostCodeSize.
    Outcome Decode(File& file, int codeSize, Manner manner);

    // What the last Decode yielded: Count() pixels, row by row in the order of the data.
    const uint8_t* Pixels() const { return memory_.get() + kLiterals; }
    uint64_t Count() const { return count_; }

private:
    static constexpr unsigned kLiterals = 256;  // the pixel values themselves stand first, as strings of length 1
    static constexpr unsigned kSlack = kMostCodes + 64;  // a last string and a last copy may run over

    std::unique_ptr<uint8_t[]> memory_;
    uint64_t room_ = 0;
    uint64_t count_ = 0;
};
