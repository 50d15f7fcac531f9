// Cutting pixels into strings that the decoder knows, one code after the other.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "platform/memory.h"
#include "size/code_sequence.h"
#include "size/string_table.h"

// How a parser looks ahead. Taking less than the longest known string may let the following ones reach farther:
// flexible parsing (Y. Matias, S. C. Sahinalp, "On the optimality of parsing in dynamic dictionary based data
// compression", 1999). It has a price while the table grows: what a shorter string and the next pixel make is known.
struct LookAhead {
    int shorter = 0;          // so many pixels less than the longest string are tried
    int strings = 1;          // judged by where so many further strings end
    int gain = 0;             // which has to be more than so many pixels farther
    int shorterWhenFull = 0;  // the same with a full table, where a code's outcome is certain: one further string tells
};

// Parses from any pixel on with a fresh table, which fills and is then kept. `Pixels` is one of pixel_choices.h. Where
// pixels leave a choice, the longest string decides on them.
template <typename Pixels>
class CodeParser {
public:
    // False when there is no memory.
    [[nodiscard]] bool Prepare(const Pixels* pixels, unsigned codeSize, const LookAhead& look) {
        pixels_ = pixels;
        codeSize_ = codeSize;
        look_ = look;
        if (!table_) table_ = AllocateScratchObject<StringTable>();
        if (!Pixels::kIsExact && !written_) written_ = AllocateScratch(pixels->Count());
        return table_ && (Pixels::kIsExact || written_);
    }

    // Goes to pixel `at`, as behind a clear code.
    void Restart(size_t at) {
        table_->Reset(1u << codeSize_);
        at_ = at;
        next_ = (1u << codeSize_) + 2;
        count_ = 0;
        bits_ = 0;
        foreseen_ = {};
    }

    // Takes the next string. False, with nothing done, at the end of the pixels.
    bool Step() {
        if (at_ >= pixels_->Count()) return false;
        const bool isTentative = AddLikeFirst();
        const bool isFull = next_ >= kMostCodes;
        Match match = LongestHere();
        if (int shorter = isFull ? look_.shorterWhenFull : look_.shorter; shorter && match.length > 1)
            match = BestOf(match, shorter, isFull);
        if (count_ && !isFull) Learn(table_->First(match.code), isTentative);
        if constexpr (!Pixels::kIsExact) table_->Write(match, written_.get() + at_);
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
    unsigned CodeUpTo(size_t end) const { return table_->Beginning(last_, length_ - (at_ - end)); }

private:
    using Match = StringTable::Match;
    struct Foreseen {
        size_t at = SIZE_MAX;  // the pixel that it begins with
        unsigned next = 0;     // the code that was to be given next
        Match string = {};
    };

    // Where the pixels from `at` on stand as they are written.
    const uint8_t* Written(size_t at) const {
        if constexpr (Pixels::kIsExact)
            return pixels_->From(at);
        else
            return written_.get() + at;
    }

    void Add(unsigned pixel) {
        if constexpr (!Pixels::kIsExact) written_[at_] = static_cast<uint8_t>(pixel);
        table_->Add(last_, pixel, next_, Written(at_ - length_));
    }

    // The decoder is about to learn the last string and the first pixel of the next. If that may be the last one's
    // first, the string can be the next one itself: it is added for now. True when that was done.
    bool AddLikeFirst() {
        if (!count_ || next_ >= kMostCodes) return false;
        const unsigned pixel = table_->First(last_);
        if (!pixels_->Allows(at_, pixel) || table_->Child(last_, pixel)) return false;
        Add(pixel);
        return true;
    }

    // The next string begins with `pixel`. Its code number is used up even if the string was known.
    void Learn(unsigned pixel, bool isTentative) {
        if (!isTentative || pixel != table_->First(last_)) {
            if (isTentative) table_->RemoveAdded();
            if (!table_->Child(last_, pixel)) Add(pixel);
        }
        ++next_;
    }

    Match Longest(size_t at) const {
        if constexpr (Pixels::kIsExact)
            return table_->Longest(pixels_->From(at), pixels_->From(pixels_->Count()));
        else
            return table_->LongestAmong(*pixels_, at);
    }

    // What was seen when looking ahead still stands there: strings learned since may only make it longer. But that of
    // the code given next may have been there for a moment.
    Match LongestHere() const {
        if constexpr (Pixels::kIsExact) {
            if (foreseen_.at == at_ && foreseen_.string.code < foreseen_.next)
                return table_->LongestBeyond(foreseen_.string, pixels_->From(at_), pixels_->From(pixels_->Count()));
        }
        return Longest(at_);
    }

    // Where the next strings from `at` on end, of which there are `strings` or fewer. Notes the first one.
    size_t Reach(size_t at, int strings, Foreseen* first) const {
        *first = {};
        if (strings <= 0 || at >= pixels_->Count()) return at;
        *first = {at, next_, Longest(at)};
        at += first->string.length;
        while (--strings > 0 && at < pixels_->Count()) at += Longest(at).length;
        return at;
    }

    // The longest string or one that is up to `shorter` pixels less.
    Match BestOf(Match longest, int shorter, bool isFull) {
        const int strings = isFull ? 1 : look_.strings;
        if (at_ + longest.length >= pixels_->Count()) return longest;
        size_t farthest =
            Reach(at_ + longest.length, strings, &foreseen_) + static_cast<size_t>(isFull ? 0 : look_.gain);
        Match best = longest, match = longest;
        while (match.length > 1 && shorter-- > 0) {
            match = {table_->Beginning(match.code, match.length - 1), match.length - 1};
            Foreseen first;
            const size_t reach = Reach(at_ + match.length, strings, &first);
            if (reach <= farthest) continue;
            farthest = reach;
            best = match;
            foreseen_ = first;
        }
        return best;
    }

    const Pixels* pixels_ = nullptr;
    unsigned codeSize_ = 0;
    LookAhead look_;
    std::unique_ptr<StringTable> table_;
    std::unique_ptr<uint8_t[]> written_;  // the pixels as they were decided on, for those that leave a choice
    size_t at_ = 0, length_ = 0;
    uint64_t count_ = 0, bits_ = 0;
    unsigned next_ = 0;  // the code that the decoder gives next
    unsigned last_ = 0;
    Foreseen foreseen_;  // the string behind the last one
};
