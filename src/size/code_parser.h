// Cutting pixels into strings that the decoder knows, one code after the other.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <utility>

#include "gif/encoder_dictionaries.h"
#include "platform/memory.h"
#include "size/code_sequence.h"

// How a parser looks ahead. Taking less than the longest known string may let the following ones reach farther:
// flexible parsing (Y. Matias, S. C. Sahinalp, "On the optimality of parsing in dynamic dictionary based data
// compression", 1999). It has a price while the table grows: what a shorter string and the next pixel make is known.
struct LookAhead {
    int shorter = 0;          // so many pixels less than the longest string are tried
    int strings = 1;          // judged by where so many further strings end
    int gain = 0;             // which has to be more than so many pixels farther
    int shorterWhenFull = 0;  // the same with a full table, where a code's outcome is certain: one further string tells
};

// Parses from any pixel on with a fresh dictionary, which fills and is then kept. `Pixels` is one of pixel_choices.h,
// `Dictionary` one of gif/encoder_dictionaries.h. Where pixels leave a choice, all strings that fit are followed, up to
// kMostLive at a time.
template <typename Pixels, typename Dictionary>
class CodeParser {
public:
    // False when there is no memory.
    [[nodiscard]] bool Prepare(const Pixels* pixels, unsigned codeSize, const LookAhead& look) {
        pixels_ = pixels;
        codeSize_ = codeSize;
        look_ = look;
        if (!tables_) tables_ = AllocateScratchObject<Tables>();
        return tables_ != nullptr;
    }

    // Goes to pixel `at`, as behind a clear code.
    void Restart(size_t at) {
        const unsigned literals = 1u << codeSize_;
        tables_->dictionary.Reset(literals);
        for (unsigned i = 0; i < literals; ++i) tables_->first[i] = static_cast<uint8_t>(i);
        at_ = at;
        next_ = literals + 2;
        count_ = 0;
        bits_ = 0;
    }

    // Takes the next string. False, with nothing done, at the end of the pixels.
    bool Step() {
        if (at_ >= pixels_->Count()) return false;
        Slot slot = nullptr;
        const bool isTentative = AddLikeFirst(&slot);
        Match match = Longest(at_);
        const bool isFull = next_ >= kMostCodes;
        if (int shorter = isFull ? look_.shorterWhenFull : look_.shorter; shorter && match.length > 1)
            match = BestOf(match, shorter, isFull);
        if (count_ && !isFull) Learn(tables_->first[match.code], isTentative, slot);
        last_ = match.code;
        length_ = match.length;
        at_ += match.length;
        bits_ += CodeWidth(codeSize_, count_++);
        return true;
    }

    size_t At() const { return at_; }          // the pixel behind the last string
    uint64_t Count() const { return count_; }  // codes so far
    uint64_t Bits() const { return bits_; }    // of these codes
    unsigned NextWidth() const { return CodeWidth(codeSize_, count_); }
    bool IsFull() const { return next_ >= kMostCodes; }
    unsigned Code() const { return last_; }  // of the last string
    // The code of the last string without its last pixels, so that it ends before pixel `end`, which lies within it.
    unsigned CodeUpTo(size_t end) const { return Shortened(last_, at_ - end); }

private:
    using Slot = typename Dictionary::Slot;
    static constexpr unsigned kMostLive = 8;

    struct Tables {
        Dictionary dictionary;
        uint16_t parent[kMostCodes];  // the string without its last pixel
        uint8_t first[kMostCodes];    // a string's first pixel
    };
    struct Match {
        unsigned code;
        size_t length;
    };
    // A string that fits the pixels so far, and how many of them would look otherwise.
    struct Live {
        unsigned code;
        unsigned changed;
    };
    struct LiveStrings {
        std::array<Live, kMostLive> strings;
        unsigned count = 0;

        // Puts one behind those that change no more; the last one falls out when there are too many.
        void Insert(Live fresh) {
            unsigned place = count;
            while (place > 0 && strings[place - 1].changed > fresh.changed) --place;
            if (place == kMostLive) return;
            if (count < kMostLive) ++count;
            for (unsigned i = count - 1; i > place; --i) strings[i] = strings[i - 1];
            strings[place] = fresh;
        }
    };

    unsigned Shortened(unsigned code, size_t pixels) const {
        while (pixels--) code = tables_->parent[code];
        return code;
    }

    void Add(Slot slot, unsigned pixel) {
        tables_->dictionary.Fill(slot, last_, pixel, next_);
        tables_->parent[next_] = static_cast<uint16_t>(last_);
        tables_->first[next_] = tables_->first[last_];
    }

    // The decoder is about to learn the last string and the first pixel of the next. If that may be the last one's
    // first, the string can be the next one itself: it is added for now. True when that was done, at `*slot`.
    bool AddLikeFirst(Slot* slot) {
        if (!count_ || next_ >= kMostCodes) return false;
        const unsigned pixel = tables_->first[last_];
        if (!pixels_->Allows(at_, pixel) || tables_->dictionary.Find(last_, pixel, slot)) return false;
        Add(*slot, pixel);
        return true;
    }

    // The next string begins with `pixel`. Its code number is used up even if the string was known.
    void Learn(unsigned pixel, bool isTentative, Slot slot) {
        if (!isTentative || pixel != tables_->first[last_]) {
            if (isTentative) *slot = 0;
            if (!tables_->dictionary.Find(last_, pixel, &slot)) Add(slot, pixel);
        }
        ++next_;
    }

    // The longest known string at a pixel; of several the one that changes least.
    Match Longest(size_t at) {
        if constexpr (Pixels::kIsExact)
            return LongestExact(at);
        else
            return LongestOfSeveral(at);
    }

    Match LongestExact(size_t at) {
        const size_t start = at, end = pixels_->Count();
        unsigned code = pixels_->Own(at);
        for (++at; at < end; ++at) {
            Slot slot;
            const unsigned longer = tables_->dictionary.Find(code, pixels_->Own(at), &slot);
            if (!longer) break;
            code = longer;
        }
        return {code, at - start};
    }

    Match LongestOfSeveral(size_t at) {
        const size_t start = at, end = pixels_->Count();
        LiveStrings strings[2];
        LiveStrings *live = &strings[0], *grown = &strings[1];
        pixels_->ForEach(at, [&](unsigned index, bool isOwn) { live->Insert({index, isOwn ? 0u : 1u}); });
        for (++at; at < end; ++at) {
            grown->count = 0;
            pixels_->ForEach(at, [&](unsigned index, bool isOwn) {
                for (unsigned i = 0; i < live->count; ++i) {
                    const Live& string = live->strings[i];
                    Slot slot;
                    if (unsigned code = tables_->dictionary.Find(string.code, index, &slot))
                        grown->Insert({code, string.changed + (isOwn ? 0u : 1u)});
                }
            });
            if (!grown->count) break;
            std::swap(live, grown);
        }
        return {live->strings[0].code, at - start};
    }

    size_t Reach(size_t at, int strings) {
        for (; strings > 0 && at < pixels_->Count(); --strings) at += Longest(at).length;
        return at;
    }

    // The longest string or one that is up to `shorter` pixels less.
    Match BestOf(Match longest, int shorter, bool isFull) {
        const int strings = isFull ? 1 : look_.strings;
        if (at_ + longest.length >= pixels_->Count()) return longest;
        size_t farthest = Reach(at_ + longest.length, strings) + static_cast<size_t>(isFull ? 0 : look_.gain);
        Match best = longest, match = longest;
        while (match.length > 1 && shorter-- > 0) {
            match = {tables_->parent[match.code], match.length - 1};
            const size_t reach = Reach(at_ + match.length, strings);
            if (reach <= farthest) continue;
            farthest = reach;
            best = match;
        }
        return best;
    }

    const Pixels* pixels_ = nullptr;
    unsigned codeSize_ = 0;
    LookAhead look_;
    std::unique_ptr<Tables> tables_;
    size_t at_ = 0, length_ = 0;
    uint64_t count_ = 0, bits_ = 0;
    unsigned next_ = 0;  // the code that the decoder gives next
    unsigned last_ = 0;
};
