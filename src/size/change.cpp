#include "size/change.h"

#include <algorithm>

#include "size/code_guess.h"
#include "size/code_search.h"

void Change::Compare() {
    if (!found_) found_ = ::Compare(*from_, *to_, within_);
}

void Change::Guess(size_t colours, bool inHurry) {
    if (guessed_) return;
    if (HasTooManyColours(colours)) {
        guessed_ = kUnshowableBits;
        return;
    }
    guessed_ = GuessBits(true);
    if (inHurry) return;
    const uint64_t own = GuessBits(false);
    clears_ = *guessed_ <= own;
    guessed_ = std::min(*guessed_, own);
}

uint64_t Change::GuessBits(bool clears) const {
    constexpr ColourId kUnchanged = 0xFFFF;
    const Rectangle& box = Found().box;
    const auto width = static_cast<size_t>(box.Width());
    return GuessCodeBits<ColourId>(width, static_cast<size_t>(box.Height()), [&](size_t y, ColourId* row) {
        const ColourId* a = from_->Row(box.top + static_cast<int>(y)) + box.left;
        const ColourId* b = to_->Row(box.top + static_cast<int>(y)) + box.left;
        if (clears)
            for (size_t x = 0; x < width; ++x) row[x] = a[x] == b[x] ? kUnchanged : b[x];
        else
            std::copy_n(b, width, row);
    });
}

bool Change::HasTooManyColours(size_t colours) const {
    constexpr size_t kMostBesideTransparent = 255;
    if (colours <= kMostBesideTransparent) return false;
    const Rectangle& box = Found().box;
    std::vector<uint8_t> isNeeded(colours);
    size_t needed = 0;
    for (int y = box.top; y < box.bottom; ++y) {
        const ColourId* a = from_->Row(y);
        const ColourId* b = to_->Row(y);
        for (int x = box.left; x < box.right; ++x)
            if (a[x] != b[x] && !isNeeded[b[x]]) {
                isNeeded[b[x]] = 1;
                ++needed;
            }
    }
    return needed > kMostBesideTransparent;
}

void Change::Measure(size_t colours) {
    if (measured_) return;
    const Rectangle& box = Found().box;
    std::vector<uint8_t> pixels;
    pixels.reserve(static_cast<size_t>(box.Pixels()));
    std::vector<int16_t> indexOf(colours, -1);
    int used = clears_ ? 1 : 0;  // 0 is what stays
    for (int y = box.top; y < box.bottom; ++y) {
        const ColourId* from = from_->Row(y);
        const ColourId* to = to_->Row(y);
        for (int x = box.left; x < box.right; ++x) {
            const bool stays = clears_ && from[x] == to[x];
            int16_t& index = indexOf[to[x]];
            if (!stays && index < 0) index = static_cast<int16_t>(std::min(used++, UINT8_MAX));
            pixels.push_back(stays ? uint8_t{0} : static_cast<uint8_t>(index));
        }
    }
    int codeSize = 2;
    while (codeSize < 8 && 1 << codeSize < used) ++codeSize;
    EncodedPixels codes;
    PixelsToEncode image;
    image.pixels = pixels;
    image.codeSize = codeSize;
    measured_ = SearchCodes(image, Effort::kFast, 0, &codes) ? codes.bits : pixels.size() * 8;
}
